"""A browser without a window, steered by the commands of WebDriver: Chromium through chromedriver, Firefox through
its own Marionette, which takes the same ones."""

import json
import pathlib
import shutil
import socket
import subprocess
import tempfile
import time
import urllib.request

PATIENCE_S = 60


class Chromium:
    def __init__(self):
        self.profile = tempfile.mkdtemp()
        self.process = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE, text=True)
        for line in self.process.stdout:
            if "started successfully on port" in line:
                self.address = f"http://localhost:{line.strip().rstrip('.').split()[-1]}/session"
                break
        options = {"args": ["--headless=new", "--no-sandbox", "--disable-gpu", f"--user-data-dir={self.profile}"]}
        session = self.post("", {"capabilities": {"alwaysMatch": {"goog:chromeOptions": options,
                                                                  "goog:loggingPrefs": {"browser": "ALL"}}}})
        self.address += "/" + session["sessionId"]

    def post(self, path, body):
        request = urllib.request.Request(self.address + path, json.dumps(body).encode(), {"Content-Type": "application/json"})
        with urllib.request.urlopen(request, timeout=PATIENCE_S) as answer:
            return json.load(answer)["value"]

    def open(self, address):
        self.post("/url", {"url": address})

    def run(self, script, *arguments):
        return self.post("/execute/sync", {"script": script, "args": list(arguments)})

    def keys(self, *keys):
        steps = [{"type": kind, "value": key} for key in keys for kind in ("keyDown", "keyUp")]
        self.post("/actions", {"actions": [{"type": "key", "id": "keys", "actions": steps}]})

    def resize(self, width, height):
        self.post("/window/rect", {"width": width, "height": height})

    def picture(self):
        with urllib.request.urlopen(self.address + "/screenshot", timeout=PATIENCE_S) as answer:
            return json.load(answer)["value"]

    def complaints(self):
        """What the browser wrote to its console since it was asked last."""
        return [entry["message"] for entry in self.post("/se/log", {"type": "browser"})
                if entry["level"] in ("SEVERE", "WARNING")]

    def close(self):
        self.process.terminate()
        self.process.wait()
        shutil.rmtree(self.profile, ignore_errors=True)


class Firefox:
    def __init__(self):
        self.profile = pathlib.Path(tempfile.mkdtemp())
        with socket.socket() as free:
            free.bind(("localhost", 0))
            port = free.getsockname()[1]
        (self.profile / "user.js").write_text(
            f'user_pref("marionette.port", {port});\n'
            'user_pref("browser.shell.checkDefaultBrowser", false);\nuser_pref("app.update.enabled", false);\n')
        self.process = subprocess.Popen(["firefox-esr", "--headless", "--marionette", "--remote-allow-system-access",
                                         "--profile", str(self.profile), "--no-remote"],
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        until = time.monotonic() + PATIENCE_S
        while True:
            try:
                self.connection = socket.create_connection(("localhost", port), timeout=PATIENCE_S)
                break
            except OSError:
                if time.monotonic() > until:
                    raise
                time.sleep(0.2)
        self.number = 0
        self.receive()
        self.command("NewSession", {})

    def receive(self):
        length = b""
        while not length.endswith(b":"):
            length += self.connection.recv(1)
        left, data = int(length[:-1]), b""
        while len(data) < left:
            data += self.connection.recv(left - len(data))
        return json.loads(data)

    def command(self, name, parameters):
        self.number += 1
        message = json.dumps([0, self.number, f"WebDriver:{name}", parameters]).encode()
        self.connection.sendall(str(len(message)).encode() + b":" + message)
        _, _, error, value = self.receive()
        if error:
            raise RuntimeError(f"{name}: {error['message']}")
        return value.get("value") if isinstance(value, dict) and "value" in value else value

    def open(self, address):
        self.command("Navigate", {"url": address})

    def run(self, script, *arguments):
        return self.command("ExecuteScript", {"script": script, "args": list(arguments)})

    def keys(self, *keys):
        steps = [{"type": kind, "value": key} for key in keys for kind in ("keyDown", "keyUp")]
        self.command("PerformActions", {"actions": [{"type": "key", "id": "keys", "actions": steps}]})

    def resize(self, width, height):
        self.command("SetWindowRect", {"width": width, "height": height})

    def picture(self):
        return self.command("TakeScreenshot", {"full": False})

    def complaints(self):
        return []  # its console is not for Marionette

    def close(self):
        self.connection.close()
        self.process.terminate()
        self.process.wait()
        shutil.rmtree(self.profile, ignore_errors=True)
