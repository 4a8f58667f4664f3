// Checks what kobctl schema prints: check.mjs SCHEMA EXPORT OPENAPI. The export must fit the schema, and exports that
// are wrong in one place must not.
import { createRequire } from "node:module";
import { readFileSync } from "node:fs";
import { Validator } from "@seriousme/openapi-schema-validator";

const [schema, settings, openapi] = process.argv.slice(2).map((file) => JSON.parse(readFileSync(file, "utf8")));
const fits = new (createRequire(import.meta.url)("ajv/dist/2020").default)({ allErrors: true }).compile(schema);
const wrongs = [];

if (!fits(settings)) wrongs.push("the export does not fit: " + JSON.stringify(fits.errors.slice(0, 5)));
const changes = {
    "a number above its range": (all) => (all.objects.webHttpPort = 65536),
    "a number as a text": (all) => (all.objects.webHttpPort = "80"),
    "no choice": (all) => (all.objects.wifiMode = "11zz"),
    "a forbidden character": (all) => (all.objects.APNName = "a`b`"),
    "a text that is too long": (all) => (all.objects.APNName = "a".repeat(2000)),
    "an unknown object": (all) => (all.objects.noSuchObject = "1"),
    "a read-only object": (all) => (all.objects.IMEI = "1"),
    "an unknown column": (all) => all.tables.FwUrlFilterTable.push({ Url: "example.com" }),
    "too many rows": (all) => (all.tables.FwUrlFilterTable = new Array(1000).fill({})),
    "no tables": (all) => delete all.tables,
};
for (const [what, change] of Object.entries(changes)) {
    const wrong = structuredClone(settings);
    change(wrong);
    if (fits(wrong)) wrongs.push(what + " fits");
}
const judged = await new Validator().validate(openapi);
if (!judged.valid) wrongs.push("OpenAPI: " + JSON.stringify(judged.errors).slice(0, 2000));

for (const wrong of wrongs) console.error(wrong);
process.exit(wrongs.length === 0 ? 0 : 1);
