"""A browser without a window, told what to do through its debugging pipe, and what a page must be for
people to use it: readable on a telephone and in a dark room, by a screen reader and without a network."""
import fcntl
import json
import os
import select
import shutil
import subprocess
import tempfile
import time

CHROMIUM = shutil.which("chromium")

# What is wrong with the page that is open, one sentence each.
CHECK = r"""(() => {
  const wrong = [];
  const root = document.documentElement;
  if (!root.lang) wrong.push('no lang');
  if (!document.title.trim()) wrong.push('no title');
  if (document.characterSet !== 'UTF-8') wrong.push('read as ' + document.characterSet);
  if (document.compatMode !== 'CSS1Compat') wrong.push('quirks mode');
  if (document.scripts.length) wrong.push('a script');
  for (const element of document.querySelectorAll('*'))
    for (const {name, value} of element.attributes)
      if (/^on/i.test(name) || /^\s*javascript:/i.test(value)) wrong.push('runs ' + name + '=' + value);
  let level = 0;
  for (const heading of document.querySelectorAll('h1, h2, h3, h4, h5, h6')) {
    const next = Number(heading.tagName[1]);
    if (!heading.textContent.trim()) wrong.push('an empty heading');
    if (level === 0 ? next !== 1 : next > level + 1)
      wrong.push('heading ' + heading.textContent + ' of level ' + next + ' behind ' + level);
    level = next;
  }
  if (document.querySelectorAll('h1').length !== 1) wrong.push('not one h1');
  for (const head of document.querySelectorAll('th'))
    if (!['col', 'row'].includes(head.scope)) wrong.push('th without scope: ' + head.textContent);
  for (const link of document.querySelectorAll('a'))
    if (!link.textContent.trim()) wrong.push('a link without a text');
  if (root.scrollWidth > root.clientWidth)
    wrong.push('is ' + root.scrollWidth + ' wide in a window of ' + root.clientWidth);
  const channel = c => (c /= 255) <= 0.03928 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4;
  const luminance = ([r, g, b]) => 0.2126 * channel(r) + 0.7152 * channel(g) + 0.0722 * channel(b);
  const colour = text => text.match(/[\d.]+/g).map(Number);
  const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
  const told = new Set();
  while (walker.nextNode()) {
    if (!walker.currentNode.data.trim()) continue;
    const element = walker.currentNode.parentElement;
    let behind = element, ground;
    do {
      ground = behind ? colour(getComputedStyle(behind).backgroundColor) : [255, 255, 255];
      behind = behind && behind.parentElement;
    } while (ground.length === 4 && ground[3] === 0);
    const [a, b] = [luminance(colour(getComputedStyle(element).color)), luminance(ground)];
    const contrast = (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05);
    const what = element.tagName + '.' + element.className;
    if (contrast < 4.5 && !told.has(what)) {
      told.add(what);
      wrong.push('contrast of ' + what + ' is ' + contrast.toFixed(1));
    }
  }
  return wrong;
})()"""

LINKS = """[...document.querySelectorAll('[href], [src]')].map(e => e.getAttribute('href')
                                                                   || e.getAttribute('src'))"""


class Browser:
    """Reads pages of files. Whatever it asks for is noted in `requests`."""

    def __init__(self):
        self.profile = tempfile.mkdtemp(prefix="quillon-browser-")
        to_browser, self.commands = os.pipe()
        self.answers, from_browser = os.pipe()

        def give_pipes():
            # First away from the numbers that they are to have.
            to = fcntl.fcntl(to_browser, fcntl.F_DUPFD, 10)
            back = fcntl.fcntl(from_browser, fcntl.F_DUPFD, 10)
            os.dup2(to, 3)
            os.dup2(back, 4)

        self.process = subprocess.Popen(
            [CHROMIUM, "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic",
             "--no-first-run", "--disable-background-networking", "--disable-component-update",
             "--disable-sync", "--hide-scrollbars", "--remote-debugging-pipe",
             f"--user-data-dir={self.profile}", "about:blank"],
            preexec_fn=give_pipes, close_fds=False, stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            env={**os.environ, "HOME": self.profile})
        os.close(to_browser)
        os.close(from_browser)
        self.buffer = b""
        self.number = 0
        self.requests = []
        self.is_loaded = False
        self.session = None
        targets = self.call("Target.getTargets")["targetInfos"]
        page = next(target for target in targets if target["type"] == "page")
        self.session = self.call("Target.attachToTarget", targetId=page["targetId"],
                                 flatten=True)["sessionId"]
        self.call("Page.enable")
        self.call("Network.enable")

    def close(self):
        self.process.terminate()
        self.process.wait(30)
        os.close(self.commands)
        os.close(self.answers)
        shutil.rmtree(self.profile, ignore_errors=True)

    def next_message(self, deadline):
        while b"\0" not in self.buffer:
            ready, _, _ = select.select([self.answers], [], [], max(0, deadline - time.monotonic()))
            piece = os.read(self.answers, 1 << 16) if ready else b""
            if not piece:
                raise TimeoutError("the browser does not answer")
            self.buffer += piece
        message, self.buffer = self.buffer.split(b"\0", 1)
        message = json.loads(message)
        if message.get("method") == "Network.requestWillBeSent":
            self.requests.append(message["params"]["request"]["url"])
        if message.get("method") == "Page.loadEventFired":
            self.is_loaded = True
        return message

    def call(self, method, **parameters):
        self.number += 1
        message = {"id": self.number, "method": method, "params": parameters}
        if self.session:
            message["sessionId"] = self.session
        os.write(self.commands, json.dumps(message).encode() + b"\0")
        deadline = time.monotonic() + 60
        while True:
            answer = self.next_message(deadline)
            if answer.get("id") == self.number:
                if "error" in answer:
                    raise AssertionError(f"{method}: {answer['error']}")
                return answer["result"]

    def open(self, path, width=1280):
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=900,
                  deviceScaleFactor=1, mobile=width < 600)
        self.is_loaded = False
        answer = self.call("Page.navigate", url=path.absolute().as_uri())
        if "errorText" in answer:
            raise AssertionError(f"{path}: {answer['errorText']}")
        deadline = time.monotonic() + 60
        while not self.is_loaded:
            self.next_message(deadline)

    def ask(self, expression):
        answer = self.call("Runtime.evaluate", expression=expression, returnByValue=True)
        if "exceptionDetails" in answer:
            raise AssertionError(answer["exceptionDetails"])
        return answer["result"].get("value")

    def text(self):
        return self.ask("document.body.innerText")

    def links(self):
        return self.ask(LINKS)

    def faults(self):
        return self.ask(CHECK)
