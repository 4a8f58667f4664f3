"""The gateway before a real daemon:  api_test.py ADDRESS
A table of requests, then clients that are slow, dead, many or rude."""
import http.client
import json
import os
import pathlib
import re
import select
import signal
import socket
import subprocess
import sys
import time
import urllib.parse

address = urllib.parse.urlparse(sys.argv[1])
token = address.fragment.removeprefix("token=")
failures = 0

OBJECT, TABLE, SIM = "/api/objects/webHttpPort", "/api/tables/FwUrlFilterTable", "/api/sim"
# method, path, body, status, what the answer has: texts, separated by blanks
REQUESTS = [
    ("GET", OBJECT, None, 200, '"value":"80" "most":65535 "meaning"'),
    ("GET", OBJECT + "x", None, 404, '"right":"webHttpPort"'),
    ("GET", "/api/objects/DnsClientTable", None, 404, '"DnsClientTable is a table, not an object."'),
    ("GET", "/api/tables/webHttpPort", None, 404, '"webHttpPort is an object, not a table."'),
    ("GET", "/api/objects?match=webHttp*&match=IME%3F&describe=0", None, 200, '"webHttpPort","value":"80" "IMEI"'),
    ("GET", "/api/objects?search=tcp+port+http&values=0", None, 200, '"webHttpPort"'),
    ("GET", "/api/objects?match=nothing", None, 200, '{"objects":[]}'),
    ("PUT", OBJECT, {"value": 70000}, 422, '"value":"70000" "right":"an'),
    ("PUT", OBJECT, {"value": [1]}, 422, "webHttpPort:"),
    ("PUT", OBJECT, {"value": "a\0b"}, 422, "zero"),
    ("PUT", OBJECT, {"port": 1}, 422, '{\\"value\\":'),
    ("PUT", "/api/objects", {"webHttpPort\0x": 1}, 422, "zero"),
    ("GET", OBJECT + "%00x", None, 400, "zero"),
    ("GET", OBJECT + "?secrets=false", None, 400, "secrets 'false'"),
    ("GET", OBJECT + "?value=0", None, 400, "'value' describe values secrets"),
    ("PUT", OBJECT, {"value": True}, 200, '"value":"1","old":"80"'),
    ("PUT", "/api/objects", {"webLanguage": "zh", "webHttpPort": 0}, 422, '"object":"webHttpPort"'),
    ("GET", "/api/objects/webLanguage", None, 200, '"value":"en"'),
    ("PUT", "/api/objects", {"IMEI": "1"}, 422, '"object":"IMEI"'),
    ("PUT", "/api/objects", {}, 422, "no"),
    ("PUT", "/api/objects", [], 400, "JSON"),
    ("PUT", "/api/objects", {f"webLanguage{i}": "x" * 100 for i in range(90)}, 413, '"code":11'),
    ("POST", SIM + "/failures", {"name": "webHttpPort", "operation": "set", "times": 1}, 204, ""),
    ("PUT", "/api/objects", {"webLanguage": "zh", "webHttpPort": 81}, 502, '"restored":["webLanguage"] "left":[]'),
    ("GET", "/api/objects/webLanguage", None, 200, '"value":"en"'),
    ("POST", "/api/check", {"webHttpPort": 0, "webLanguage": "en", "lteLockpin": "1,1"}, 200, '"refused" "ok" "open"'),
    ("GET", "/api/tables", None, 200, '"FwUrlFilterTable" "maxRows"'),
    ("POST", TABLE, {"URL": "192.168.1.1"}, 422, '"reason" "right" deleted again'),
    ("POST", TABLE, {"Nothing": "1"}, 422, '"column":"Nothing"'),
    ("GET", TABLE, None, 200, '"rows":[]'),
    ("POST", TABLE, {"URL": "example.com"}, 201, '{"index":2}'),
    ("PATCH", "/api/tables", {"FwUrlFilterTable": {"2": {"URL": "a.example"}, "9": {"URL": "b.example"}}}, 404, '"index":9'),
    ("GET", TABLE + "/2", None, 200, "example.com"),
    ("PATCH", "/api/tables", {"FwUrlFilterTable": {"2": {"URL": "a.example"}}, "DnsClientTable": {"1": {"Enable": 0}}}, 200, '"rows":2'),
    ("POST", SIM + "/failures", {"name": "FwUrlFilterTable", "operation": "set", "times": 1}, 204, ""),
    ("PATCH", "/api/tables", {"FwUrlFilterTable": {"2": {"URL": "z.example"}}, "DnsClientTable": {"1": {"Enable": 1}}}, 502, '"left":[] as before'),
    ("GET", "/api/tables/DnsClientTable/1", None, 200, '"Enable":"0"'),
    ("GET", TABLE + "/2", None, 200, "a.example"),
    ("POST", SIM + "/failures", {"name": "DnsClientTable", "operation": "get", "times": 2}, 204, ""),
    ("PATCH", "/api/tables/DnsClientTable/1", {"Alias": "z"}, 502, "DnsClientTable cannot be read, nothing was set"),
    ("DELETE", SIM, None, 204, ""),
    ("GET", "/api/tables/DnsClientTable/1", None, 200, '"Alias":"dns1" "DnsServer":"192.0.2.53"'),
    ("POST", SIM + "/failures", {"name": "webLanguage", "operation": "get"}, 204, ""),
    ("POST", SIM + "/failures", {"name": "webHttpPort", "operation": "set", "times": 1}, 204, ""),
    ("PUT", "/api/objects", {"webLanguage": "zh", "webHttpPort": 81}, 502, '"left":["webLanguage"]} back: webLanguage"'),
    ("DELETE", SIM, None, 204, ""),
    ("PUT", "/api/objects/webLanguage", {"value": "en"}, 200, '"old":"zh"'),
    ("PATCH", "/api/tables", {"DnsClientTable": {"1": {"Enable": 0}}}, 200, ""),
    ("PATCH", "/api/tables", {"FwUrlFilterTable": {"two": {}}}, 400, "'two'"),
    ("PATCH", TABLE + "/2", {"URL": "b.example"}, 200, '"URL":"b.example"'),
    ("POST", SIM + "/failures", {"operation": "commit", "times": 2}, 204, ""),
    ("PUT", OBJECT, {"value": 82}, 200, '"value":"82" "saved":false,"not_saved":"the'),
    ("DELETE", TABLE + "/2", None, 200, '"saved":false'),
    ("PUT", OBJECT, {"value": 1}, 200, '"old":"82"}'),
    ("DELETE", TABLE + "/2", None, 404, "empty"),
    ("GET", TABLE + "/99999999999", None, 400, "index"),
    ("PUT", SIM + "/objects", {"RSRP": "-111"}, 204, ""),
    ("GET", "/api/objects/RSRP", None, 200, "-111"),
    ("PUT", SIM + "/objects", {"--help": "1"}, 422, "--help"),
    ("PUT", SIM + "/objects", {"a=b": "1"}, 422, "'a=b'"),
    ("PUT", SIM + "/objects", {"WebPass": "hidden"}, 204, ""),
    ("GET", SIM, None, 200, '"WebPass","what":"value","value":"(secret)"'),
    ("POST", SIM + "/delays", {"name": "FwUrlFilterTable", "milliseconds": 1}, 204, ""),
    ("POST", SIM + "/tables/FwUrlFilterTable", {"URL": "c.example"}, 201, '"index"'),
    ("POST", SIM + "/events", {"name": "Nonsense"}, 422, "Nonsense"),
    ("GET", SIM, None, 200, '"RSRP" "milliseconds":1 "signal-fade" "playing":""'),
    ("POST", SIM + "/scenarios/..%2F..%2Fetc", None, 404, ""),
    ("POST", SIM + "/scenarios/passwd", None, 404, "passwd"),
    ("DELETE", SIM, None, 204, ""),
    ("GET", "/api/history?count=1", None, 200, '"table":"FwUrlFilterTable","index":2'),
    ("POST", "/api/undo", {"count": "all"}, 422, "count"),
    ("POST", "/api/undo", {"cuont": 5}, 400, "cuont"),
    ("POST", "/api/undo", {"count": 1, "newest": 1}, 409, "newest nothing was taken back"),
    ("POST", "/api/undo", {"count": 1}, 200, '"undone"'),
    ("POST", TABLE, {"URL": "d.example"}, 201, '"index"'),  # two commits, one step
    ("POST", "/api/undo", {"count": 1}, 200, '"undone":["FwUrlFilterTable'),
    ("POST", "/api/objects", {}, 405, "GET, PUT"),
    ("GET", "/openapi.json", None, 200, '"3.1.0" "webHttpPort" "/api/undo" "/api/tables/{table}/{index}"'),
    ("GET", "/%2e%2e/etc/passwd", None, 404, ""),
]


def check(what, holds, seen=""):
    global failures
    if not holds:
        failures += 1
        print(f"FAILED: {what}\n{str(seen)[:600]}", file=sys.stderr)


def ask(method, path, body=None, **fields):
    connection = http.client.HTTPConnection(address.hostname, address.port, timeout=20)
    sent = None if body is None else json.dumps(body)
    connection.request(method, path, sent, {"Authorization": f"Bearer {token}", **fields})
    answer = connection.getresponse()
    return answer.status, answer.read().decode(), answer.headers


def raw(*parts, wait=0.0):
    """What comes back for bytes sent as they are, until the gateway closes the connection."""
    with socket.create_connection((address.hostname, address.port), timeout=20) as client:
        for part in parts:
            client.sendall(part.encode())
            time.sleep(wait)
        return b"".join(iter(lambda: client.recv(65536), b"")).decode()


for method, path, body, status, wanted in REQUESTS:
    seen_status, text, headers = ask(method, path, body)
    what = f"{method} {path} {json.dumps(body)[:80]}: wanted {status} with {wanted}"
    check(what, seen_status == status and all(word in text for word in wanted.split()), f"{seen_status} {text}")
    check(f"{what}: its type", status < 400 or headers["Content-Type"] == "application/problem+json", headers)

# Who may ask.
check("no token", ask("GET", OBJECT, Authorization="")[0] == 401)
check("a wrong token", ask("GET", OBJECT, Authorization="Bearer " + "0" * 32)[0] == 401)
check("a token in the query opens the events alone", ask("GET", f"{OBJECT}?token={token}", Authorization="")[0] == 401)
check("another name of this machine", ask("GET", OBJECT, Host=f"evil.example:{address.port}")[0] == 421)
check("another page", ask("GET", OBJECT, Origin="http://evil.example")[0] == 403)
secrets = [json.loads(ask("GET", f"/api/objects?match=*assw*&secrets={i}")[1])["objects"] for i in (0, 1)]
check("secrets are masked", any(a["value"] != b["value"] for a, b in zip(*secrets) if b.get("secret") and "value" in b))

# Rude requests.
head = f"Host: {address.netloc}\r\nAuthorization: Bearer {token}\r\n"
get = f"GET {OBJECT}?describe=0 HTTP/1.1\r\n{head}"
last = get + "Connection: close\r\n\r\n"
put = f"PUT {OBJECT} HTTP/1.1\r\n{head}Connection: close\r\nContent-Length: "
for what, status, parts in [
    ("two requests at once", 200, [get + "\r\n" + last]),
    ("a byte at a time", 200, list(last)),
    ("a body that is announced", 200, [put + "14\r\nExpect: 100-continue\r\n\r\n", '{"value":"80"}']),
    ("a body that is too long", 413, [put + "999999999\r\n\r\n", "x" * 100000]),
    ("two lengths", 400, [put + "1\r\nContent-Length: 2\r\n\r\n{}"]),
    ("a length that is none", 400, [put + "-1\r\n\r\n"]),
    ("a transfer encoding", 411, [f"PUT {OBJECT} HTTP/1.1\r\n{head}Transfer-Encoding: chunked\r\n\r\n0\r\n\r\n"]),
    ("a long header", 431, ["GET / HTTP/1.1\r\nX: " + "x" * 20000]),
    ("a long address", 414, ["GET /" + "x" * 12000 + " HTTP/1.1\r\n\r\n"]),
    ("no HTTP", 400, ["hello\r\n\r\n"]),
]:
    answer = raw(*parts, wait=0.001 if len(parts) > 2 else 0.05)
    check(what, f"HTTP/1.1 {status} " in answer, answer)
answer = raw(put + '27\r\n\r\n{"value":"81","value":"82"}')
check("a value twice", " 422 " in answer and "twice" in answer, answer)

end = time.monotonic() + 4
with socket.create_connection((address.hostname, address.port), timeout=10) as client:
    try:
        client.sendall(f"GET /api/events?token={token} HTTP/1.1\r\n{head}\r\n".encode())
        client.recv(1)
        while time.monotonic() < end:
            client.sendall(b"x" * 65536)
    except OSError:
        pass
check("a listener that sends without end is ended", time.monotonic() < end)
check("both of two requests are answered", raw(get + "\r\n" + last).count("HTTP/1.1 200") == 2)

# What kobctl describes is what the gateway takes: /openapi.json has the parameters of the gateway's own list.
served = json.loads(ask("GET", "/openapi.json")[1])["paths"]
described = json.loads(subprocess.run(["kobctl", "schema", "--openapi"], check=True, capture_output=True).stdout)["paths"]
for path, operations in served.items():
    ours = path.startswith(("/api/objects", "/api/tables", "/api/check", "/api/events"))
    check(f"kobctl describes {path}", not ours or operations.keys() == described.get(path, {}).keys())
    for method, operation in operations.items():
        theirs = described.get(path, {}).get(method, {}).get("parameters", []) if ours else operation["parameters"]
        check(f"the parameters of {method} {path}", sorted(map(str, operation["parameters"])) == sorted(map(str, theirs)), theirs)
        check(f"the token of {method} {path}", path.startswith("/api/") != ("security" in operation))

types = {one["name"]: one["schema"]["type"] for one in served["/api/objects"]["get"]["parameters"]}
check("several patterns, and one search", (types["match"], types["search"]) == ("array", "string"), types)
# A request that succeeds answers with a status that the description has.
for method, path, _, status, _ in REQUESTS:
    described = [list(operations.get(method.lower(), {}).get("responses", {})) for template, operations in served.items()
                 if re.fullmatch(re.sub(r"\{\w+\}", "[^/]+", template), path.split("?")[0])]
    check(f"the status of {method} {path}", status >= 300 or any({str(status), "2XX"} & set(one) for one in described), described)

# What the page about the gateway shows, as it is shown.
page = (pathlib.Path(__file__).parents[2] / "docs/web.md").read_text().replace("0123456789abcdef" * 2, token)
header, *commands = re.findall("^    ((?:T=|curl ).*)$", page.replace("127.0.0.1:8088", address.netloc), re.M)
for command in commands:
    done = subprocess.run(["sh", "-c", header + "\n" + command.replace("curl", "curl -sS --fail-with-body --max-time 2")],
                          capture_output=True, text=True)
    listens = "/api/events" in command
    right = (done.returncode, '"up":true' in done.stdout) == (28, True) if listens else done.returncode == 0
    check(command, right and len(commands) > 3, done.stdout + done.stderr)

# Slow clients hold up nobody; a hundred listeners hear, one more is refused, and they leave their places free.
slow = [socket.create_connection((address.hostname, address.port)) for _ in range(300)]
for client in slow:
    client.sendall(b"GET / HTTP/1.1\r\nHo")
listeners = [socket.create_connection((address.hostname, address.port), timeout=10) for _ in range(100)]
for client in listeners:
    client.sendall(f"GET /api/events?token={token} HTTP/1.1\r\nHost: {address.netloc}\r\n\r\n".encode())
for client in listeners:
    heard = client.recv(4096).decode()
    while '"up":true' not in heard:
        heard += client.recv(4096).decode()
begin = time.monotonic()
check("requests beside slow clients and listeners", ask("GET", OBJECT)[0] == 200 and time.monotonic() - begin < 1)
status, text, _ = ask("GET", "/api/events")
check("one listener more", status == 503 and "100 places" in text, text)
subprocess.run(["kobctl", "set", "webHttpPort=8123"], check=True)
check("all hear", all('"new":"8123"' in client.recv(65536).decode() for client in listeners[1:]))
# The first listener has read nothing for a while: what it could not be sent is counted for it.
texts = [o["name"] for o in json.loads(ask("GET", "/api/objects?values=0")[1])["objects"]
         if o["type"] == "text" and o["writable"] and o["readable"] and not o.get("secret") and o.get("most", 0) > 250]
texts = [name for name in texts if ask("PUT", f"/api/objects/{name}", {"value": "y" * 250})[0] == 200][:20]
for i in range(120):
    ask("PUT", "/api/objects", {name: f"{i:03}" + "x" * 240 for name in texts})
    for client in listeners[1:]:
        client.setblocking(False)
        while client in select.select([client], [], [], 0)[0] and client.recv(1 << 20):
            pass
listeners[0].settimeout(2)
heard = b""
for _ in range(100):
    if b"event: missed" in heard:
        break
    heard += listeners[0].recv(1 << 20)
    subprocess.run(["kobctl", "set", "webHttpPort=8124"], check=True)
check("a listener behind misses events and is told", b"event: missed" in heard, len(heard))
for client in listeners + slow:
    client.close()
time.sleep(0.5)
with socket.create_connection((address.hostname, address.port), timeout=10) as client:
    client.sendall(f"GET /api/events?token={token} HTTP/1.1\r\nHost: {address.netloc}\r\n\r\n".encode())
    check("places are free again", "200 OK" in client.recv(4096).decode())

# A table that cannot be read costs the old values, not the changes; then the daemon ends.
ask("POST", SIM + "/failures", {"name": "DnsClientTable", "operation": "next"})
with socket.create_connection((address.hostname, address.port), timeout=10) as client:
    client.sendall(f"GET /api/events?token={token} HTTP/1.1\r\nHost: {address.netloc}\r\n\r\n".encode())
    heard = ""
    while "router" not in heard:
        heard += client.recv(4096).decode()
    check("events without old values", '"up":true' in heard and "names alone" in heard, heard)
os.kill(int(os.environ["KOBD_PROCESS"]), signal.SIGTERM)
while ask("GET", OBJECT)[0] != 503:
    time.sleep(0.1)
for path, body in [("/api/undo", {}), (SIM + "/scenarios/signal-fade", None), (SIM + "/events", {"name": "NetworkUp"})]:
    status, text, _ = ask("POST", path, body)
    check(f"{path} without the daemon", status == 503 and '"code":3' in text, text)
sys.exit(failures > 0)
