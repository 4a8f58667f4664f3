// Runs every command with --json and checks each line that it prints: json.mjs PAGE SCHEMA. The commands are the
// examples of the page, each under the name of its command, and those below. The page must have all commands.
import { spawnSync } from "node:child_process";
import { createRequire } from "node:module";
import { readFileSync } from "node:fs";

const [page, schema] = process.argv.slice(2).map((file) => readFileSync(file, "utf8"));
const ajv = new (createRequire(import.meta.url)("ajv/dist/2020").default)({ allErrors: true, strict: true, allowUnionTypes: true, strictRequired: false, strictTypes: false });
ajv.addSchema({ ...JSON.parse(schema), $id: "json" });
const fits = (name) => ajv.getSchema(`json#/$defs/${encodeURIComponent(name)}`);
const wrongs = [];
// A bash whose input is a socket would read ~/.bashrc.
const lines = (command) => spawnSync("bash", ["--norc", "-c", command], { encoding: "utf8", stdio: ["ignore", "pipe", "inherit"], timeout: 30000 }).stdout.split("\n").filter((line) => line !== "");

const examples = page.split(/^##+ /m).slice(1).flatMap((section) =>
    [...section.matchAll(/^ {4}\$ (.*)$/gm)].map(([, command]) => [section.split("\n")[0].replace("A failure", "failure"), command]));
const more = [
    ["get", "kobctl get '*' --json"],
    ["get", "kobctl get noSuch wifiKey0 --json"],
    ["list", "kobctl list --json; kobctl list --long --json; kobctl list zzz --json"],
    ["search", "kobctl search e --json"],
    ["describe", "kobctl describe '*' --json"],
    ["table dump", "kobctl table dump $(kobctl list 'F*Table' 'D*Table' node_597Table) --json"],
    ["confirm", "kobctl confirm --resume --json; kobctl set --confirm 60 webHttpPort=85 webHttpEnable=1 >/dev/null; kobctl set webHttpPort=80 >/dev/null; kobctl confirm --json"],
    ["check", "kobctl check noSuch=1 'webHttpPort=a' --json; kobctl check FwUrlFilterTable 9 URL=a --json"],
    ["import", "printf '[DnsClientTable]\\nend\\n' >a; kobctl import --dry-run a --json; kobctl import a --json"],
    ["import", "printf '[FwUrlFilterTable]\\n[FwUrlFilterTable row]\\nURL=192.0.2.1\\nend\\n' >a; kobctl import a --json"],
    ["failure", "printf 'a\\nb=1\\n[c]\\n' >a; kobctl import a --json; kobctl batch a --json; kobctl sim run ./a --json; kobctl --json"],
    ["failure", "kobctl undo 0 --json; kobctl table get FwUrlFilterTable 9 --json; kobctl export /mnt/none/file --json"],
    ["watch", "(sleep 1; kobctl table add FwUrlFilterTable URL=a.example; kobctl event ApnIPChange 1) >/dev/null & kobctl watch --count 4 --json"],
    ["monitor", "(sleep 1; kobctl set webHttpEnable=0; kobctl table set DnsRelayTable 1 Enable=0; kobctl event ApnIPChange 1) & kobctl monitor --count 6 --json"],
    ["history", "kobctl history --json"],
    ["commit", "kobctl sim fail commit --json >/dev/null; kobctl commit --json; kobctl sim clear >/dev/null"],
    ["set", "kobctl sim fail commit >/dev/null; kobctl set webHttpPort=90 --json; kobctl sim clear >/dev/null"],
];
for (const [name, command] of [...examples, ...more])
    for (const line of lines(command)) {
        let data;
        try { data = JSON.parse(line); } catch { wrongs.push(`${command} prints no JSON: ${line}`); continue; }
        const failed = data.error === undefined ? name : "failure";
        if (!fits(failed)(data)) wrongs.push(`${command}: ${line.slice(0, 300)}: ${ajv.errorsText(fits(failed).errors).slice(0, 500)}`);
    }

const words = (line) => lines(`kobctl complete -- ${line} ''`).map((found) => found.split("\t")[0]);
const groups = ["table", "sim", "nvram", "config"];
const commands = words("").flatMap((word) => (groups.includes(word) ? words(word).map((second) => `${word} ${second}`) : [word]));
if (commands.length < 40) wrongs.push(`kobctl has only these commands: ${commands}`);
for (const command of commands)
    if (!examples.some(([name]) => name === command) || !fits(command)) wrongs.push(`the page or its schema lacks ${command}`);

for (const wrong of wrongs) console.error(wrong);
process.exit(wrongs.length === 0 ? 0 : 1);
