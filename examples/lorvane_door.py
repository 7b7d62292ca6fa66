"""A client of `lorvane serve` (docs/automation.md). Python's standard library only.

    with Door.start(["lorvane", "--now", "2028-01-10T09:00", "serve"]) as door:
        mail = door.user.call("NewMail")
        print(mail.get("Caption"))
"""

import base64
import json
import socket
import subprocess


class DoorError(Exception):
    """An error answer: `code`, and for an error of the host or the add-in `number`."""

    def __init__(self, error):
        super().__init__(error["message"])
        self.code = error["code"]
        self.data = error.get("data") or {}
        self.number = self.data.get("number")


class Remote:
    """An object behind the door. It is let go with `release`, or with the door."""

    def __init__(self, door, number, class_name):
        self.door, self.number, self.class_name = door, number, class_name

    def get(self, member, *args, **named):
        return self.door.request("get", self._use(member, args, named))

    def put(self, member, value, *args):
        self.door.request("put", {**self._use(member, args, {}), "value": to_json(value)})

    def call(self, member, *args, **named):
        return self.door.request("call", self._use(member, args, named))

    def begin(self, member, *args, **named):
        """The same as `call`, for what opens a window or a box: it does not wait. `Pending.result` does."""
        return self.door.begin("call", self._use(member, args, named))

    def advise(self):
        self.door.request("advise", {"obj": self.number})

    def release(self):
        self.door.request("release", {"obj": self.number})

    def _use(self, member, args, named):
        params = {"obj": self.number, "member": member, "args": [to_json(value) for value in args]}
        if named:
            params["named"] = {name: to_json(value) for name, value in named.items()}
        return params

    def __repr__(self):
        return f"<{self.class_name} {self.number}>"


class Pending:
    """A request that was sent; its answer may come much later."""

    def __init__(self, door, number):
        self.door, self.number = door, number

    def result(self):
        return self.door.answer(self.number)


def to_json(value):
    if isinstance(value, Remote):
        return {"$obj": value.number}
    if isinstance(value, bytes):
        return {"$base64": base64.b64encode(value).decode("ascii")}
    if isinstance(value, (list, tuple)):
        return [to_json(item) for item in value]
    return value


class Door:
    """One connection. Requests are sent one after the other; notifications that come meanwhile wait in `notifications`."""

    def __init__(self, reading, writing, close):
        self._reading, self._writing, self._close = reading, writing, close
        self._last, self._answers = 0, {}
        self.notifications = []

    @classmethod
    def start(cls, command):
        """Starts the program as a child that speaks on its standard input and output."""
        process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, encoding="utf-8")

        def close():
            process.stdin.close()
            process.wait()

        return cls(process.stdout, process.stdin, close)

    @classmethod
    def connect(cls, path):
        """Connects to the socket of `lorvane serve --socket PATH`."""
        connection = socket.socket(socket.AF_UNIX)
        connection.connect(path)
        stream = connection.makefile("rw", encoding="utf-8", newline="\n")

        def close():
            stream.close()
            connection.close()

        return cls(stream, stream, close)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._close()

    def root(self, name):
        return self.request("root", {"name": name})

    def __getattr__(self, name):
        """`door.application`, `door.user`, `door.forms`, `door.globals`, `door.modules`."""
        roots = {"application": "Application", "user": "User", "forms": "Forms", "globals": "Globals", "modules": "Modules"}
        if name not in roots:
            raise AttributeError(name)
        setattr(self, name, self.root(roots[name]))
        return self.__dict__[name]

    def begin(self, method, params):
        self._last += 1
        message = {"jsonrpc": "2.0", "id": self._last, "method": method, "params": params}
        self._writing.write(json.dumps(message) + "\n")
        self._writing.flush()
        return Pending(self, self._last)

    def request(self, method, params):
        return self.begin(method, params).result()

    def answer(self, number):
        while number not in self._answers:
            self._take(self._read())
        message = self._answers.pop(number)
        if "error" in message:
            raise DoorError(message["error"])
        return self._from_json(message["result"])

    def wait_for(self, method, **params):
        """The next notification of this name whose parameters are these, among those that came and those to come."""
        while True:
            for place, (name, told) in enumerate(self.notifications):
                if name == method and all(told.get(key) == value for key, value in params.items()):
                    del self.notifications[: place + 1]
                    return told
            self._take(self._read())

    def _read(self):
        line = self._reading.readline()
        if not line:
            raise EOFError("the door is closed")
        return json.loads(line)

    def _take(self, message):
        if message.get("id") is not None:
            self._answers[message["id"]] = message
        elif "method" in message:
            self.notifications.append((message["method"], self._from_json(message["params"])))
        else:
            raise DoorError(message["error"])

    def _from_json(self, value):
        if isinstance(value, list):
            return [self._from_json(item) for item in value]
        if not isinstance(value, dict):
            return value
        if "$obj" in value:
            return Remote(self, value["$obj"], value["class"])
        if "$base64" in value:
            return base64.b64decode(value["$base64"])
        if value == {"$null": True}:
            return None
        return {key: self._from_json(item) for key, item in value.items()}
