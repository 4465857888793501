"""Headless Chromium, by the protocol of its driver, as far as it is needed."""
import json
import re
import shutil
import subprocess
import urllib.error
import urllib.request

FLAGS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
         "--disable-background-networking", "--disable-component-update", "--disable-sync",
         "--window-size=390,844"]
# Waits until a page has everything that it searches.
INDEXED = """new Promise(done => (function wait() {
  index.length < rows.length ? setTimeout(wait, 5) : done();
})())"""


def is_there():
    return all(shutil.which(program) for program in ("chromium", "chromedriver"))


class Browser:
    def __init__(self):
        self.driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE, text=True)
        port = next(match[1] for line in self.driver.stdout
                    if (match := re.search(r"started successfully on port (\d+)", line)))
        self.address = f"http://127.0.0.1:{port}/session"
        options = {"args": FLAGS}
        self.address += "/" + self.post("", {"capabilities": {"alwaysMatch": {
            "goog:chromeOptions": options, "goog:loggingPrefs": {"browser": "ALL"}}}})["sessionId"]

    def post(self, command, body):
        request = urllib.request.Request(self.address + command, json.dumps(body).encode(),
                                         {"Content-Type": "application/json"})
        try:
            with urllib.request.urlopen(request) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as e:
            raise RuntimeError(json.load(e)["value"]["message"]) from None

    def open(self, url):
        self.post("/url", {"url": "about:blank"})  # or else another anchor would load nothing
        self.post("/url", {"url": url})

    def run(self, script):
        return self.post("/execute/sync", {"script": "return " + script, "args": []})

    def do(self, command, **parameters):
        self.post("/goog/cdp/execute", {"cmd": command, "params": parameters})

    def press(self, *keys):
        actions = [{"type": kind, "value": key} for key in keys for kind in ("keyDown", "keyUp")]
        self.post("/actions", {"actions": [{"type": "key", "id": "keys", "actions": actions}]})

    def complaints(self):
        return [entry["message"] for entry in self.post("/se/log", {"type": "browser"})]

    def close(self):
        urllib.request.urlopen(urllib.request.Request(self.address, method="DELETE")).close()
        self.driver.terminate()
        self.driver.wait()
