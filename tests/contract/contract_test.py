"""Drives the running terminal from docs/rest-api.yaml.

Every route gets the documented example, values of every type at every key, and broken bodies; the
schemas say what has to be refused. The terminal's own calls come to a service of this test and are
held against the same document.

usage: contract_test.py BINARIES STAGED_ROOT DOCUMENT
"""

import http.client
import http.server
import json
import pathlib
import signal
import sys
import threading
import unittest

import jsonschema
import yaml

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1]))
from support.running import Running, wait_for

BINARIES, STAGED, DOCUMENT = (pathlib.Path(argument) for argument in sys.argv[1:4])
API = "/cloud-service/rest-api"
USER_ENROLLED, INFO_SIZE = 3034, 616

# Beside them every schema gets what lies just outside of its own limits.
VALUES = [None, True, [], {}, "", "x", "\u0000", "가", "0" * 300, 0, -1, "-1", 1.5, 1e300, [5],
          {"a": 1}]


def resolved(node, document):
    """The node with every reference replaced by what it refers to."""
    if isinstance(node, list):
        return [resolved(each, document) for each in node]
    if not isinstance(node, dict):
        return node
    if "$ref" in node:
        target = document
        for key in node["$ref"].lstrip("#/").split("/"):
            target = target[key]
        return resolved(target, document)
    return {key: resolved(value, document) for key, value in node.items()}


def places(schema, path=()):
    """Every value that the schema knows, as its path and its own schema."""
    for part in schema.get("allOf", [schema]):
        for key, inner in part.get("properties", {}).items():
            yield path + (key,), inner
            yield from places(inner, path + (key,))


def values_for(schema):
    for limit, step in (("minimum", -1), ("maximum", 1)):
        if limit in schema:
            yield from (schema[limit], str(schema[limit]), schema[limit] + step)
    for length in (schema.get("minLength", 1) - 1, schema.get("maxLength", 0) + 1):
        yield "1" * length
    if "minLength" in schema:
        yield from ("1" * schema["minLength"], "Z" * schema["maxLength"])
    for value in schema.get("enum", []):
        yield value
        if isinstance(value, int):
            yield from (value + 1, str(value + 1))
    yield from VALUES


def with_value(body, path, value):
    key, *rest = path
    return {**body, key: with_value(body.get(key, {}), rest, value) if rest else value}


def without_nulls(body):
    """The body as the document reads it."""
    if not isinstance(body, dict):
        return body
    return {key: without_nulls(value) for key, value in body.items() if value is not None}


def validator(message):
    schema = message["content"]["application/json"]["schema"]
    jsonschema.Draft202012Validator.check_schema(schema)
    return jsonschema.Draft202012Validator(schema)


class Request:
    """What the document says of the bodies of a route."""

    def __init__(self, body):
        media = body["content"]["application/json"]
        self.example = media["example"]
        self.refused = media.get("x-refused", [])
        self.validator = validator(body)
        self.places = list(places(media["schema"]))
        self.number = dict(self.places).get(("userInfo", "cardInfo", "cardNo"), {})

    def expected(self, body):
        """The result code that answers a body."""
        body = without_nulls(body)
        if "minLength" in self.number:  # which is looked at first
            number = body
            for key in ("userInfo", "cardInfo", "cardNo"):
                number = number.get(key) if isinstance(number, dict) else None
            length = len(number) if isinstance(number, str) else 0
            if not self.number["minLength"] <= length <= self.number["maxLength"]:
                return "3001"
        return "1000" if self.validator.is_valid(body) else "9999"


class Service(http.server.BaseHTTPRequestHandler):
    """The management service: takes every call over and keeps it."""

    calls = {}

    def do_POST(self):
        body = self.rfile.read(int(self.headers["Content-Length"]))
        name = self.path.rsplit("/", 1)[1].removesuffix(".do")
        self.calls.setdefault(name, (self.path, self.headers, json.loads(body)))
        answer = json.dumps({"resultCode": "1000", "access_token": "service"}).encode()
        self.send_response(200)
        self.send_header("Content-Length", str(len(answer)))
        self.end_headers()
        self.wfile.write(answer)

    def log_message(self, *_):
        pass


class Contract(Running):
    binaries, staged = BINARIES, STAGED

    @classmethod
    def setUpClass(cls):
        document = yaml.safe_load(DOCUMENT.read_text("utf-8"))
        cls.routes = resolved(document["paths"], document)
        cls.webhooks = resolved(document["webhooks"], document)
        cls.answers = {
            route: validator(item["post"]["responses"]["200"])
            for route, item in cls.routes.items()
        }

    def setUp(self):
        super().setUp()
        Service.calls.clear()
        service = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Service)
        threading.Thread(target=service.serve_forever, daemon=True).start()
        self.addCleanup(service.server_close)
        self.addCleanup(service.shutdown)
        self.controller = self.start_controller()
        self.settings("managerControl 1", "setup.operation 0", "network.useManager 1",
                      "network.checkPeriod 1", "network.own.managerAddress 127.0.0.1",
                      f"network.own.managerPort {service.server_port}")
        self.start("zel-terminal", "-platform", "offscreen")
        wait_for("the terminal", lambda: "connect" in Service.calls)

    def post(self, route, body):
        """The result code of the answer, which is held against its schema."""
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=10)
        connection.request("POST", API + route, body.encode())
        answer = connection.getresponse()
        text = answer.read()
        connection.close()
        with self.subTest(route=route, body=body[:200]):
            self.assertEqual(answer.status, 200)
            self.assertEqual(answer.getheader("Access-Control-Allow-Origin"), "*")
            self.assertIsNone(answer.getheader("Content-Type"))
            self.answers[route].validate(json.loads(text))
        return json.loads(text)["resultCode"]

    def check(self, route, body, expected):
        text = body if isinstance(body, str) else json.dumps(body)
        code = self.post(route, text)
        with self.subTest(route=route, body=text[:200]):
            self.assertEqual(code, expected)

    def commands(self):
        """The folders that wait for the controller."""
        return sorted(self.root.glob("mnt/data/Images/*_*"))

    def test_bodies(self):
        # Connected still, but nothing of what is accepted here is carried out.
        self.controller.send_signal(signal.SIGSTOP)
        self.addCleanup(self.controller.kill)
        for route, item in self.routes.items():
            if "requestBody" not in item["post"]:
                for body in ("", "{}", "[", '{"userInfo":5}'):
                    self.check(route, body, "1000")
                continue
            request = Request(item["post"]["requestBody"])
            self.check(route, request.example, "1000")
            before = self.commands()
            nothing = request.expected({})
            for body in ("", "[{}]", "5", '{"a":', "{" * 2000, '{"a":' * 100000, "\0", "\ufeff{}",
                         '{"a":[{}],"a":1}', '{"a":[],"\\u0061":1}'):
                self.check(route, body, nothing)
            for body in request.refused:
                self.check(route, body, "9999")
            self.assertEqual(self.commands(), before, route)
            for path, schema in request.places:
                for value in values_for(schema):
                    body = with_value(request.example, path, value)
                    self.check(route, body, request.expected(body))

    def test_permission(self):
        self.settings("managerControl 0")
        wait_for("the permission to go", lambda: self.post("/door-open.do", "") == "2000")
        for route, item in self.routes.items():
            operation = item["post"]
            body = Request(operation["requestBody"]).example if "requestBody" in operation else ""
            self.check(route, body, "2000" if operation.get("x-manager-control") else "1000")
        self.assertEqual(self.commands(), [])

    def test_calls(self):
        # Once the answer that the token comes with has been read.
        wait_for("the contact", lambda: "connection-check" in Service.calls)
        self.tell("card 10000001")
        self.tell("visitor")
        self.tell(f"frame {USER_ENROLLED} 0 0 {'00' * INFO_SIZE}")
        # Nothing deletes users at the terminal here.
        awaited = set(self.webhooks) - {"user-deleted"}
        wait_for("the calls", lambda: awaited <= set(Service.calls))
        for name in awaited:
            path, headers, body = Service.calls[name]
            operation = self.webhooks[name]["post"]
            with self.subTest(name):
                self.assertEqual(path, f"{API}/{name}.do")
                self.assertEqual(headers["Content-Type"], "application/json; charset=utf-8")
                validator(operation["requestBody"]).validate(body)
                for parameter in operation["parameters"]:
                    jsonschema.validate(headers[parameter["name"]], parameter["schema"])
                self.assertEqual(headers["access_token"], body.get("access_token", "service"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
