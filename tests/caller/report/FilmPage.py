"""The page of `zivora report` in headless Chromium, without a network."""

import json
import pathlib
import time

from selenium import webdriver
from selenium.webdriver.chrome.service import Service

# No name is resolved, and Chromium refuses to run as root with its sandbox.
ARGUMENTS = ["--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--host-resolver-rules=MAP * ~NOTFOUND",
             "--disable-background-networking", "--window-size=1400,1000"]


class FilmPage:
    def __init__(self, path):
        self.address = pathlib.Path(path).resolve().as_uri()
        options = webdriver.ChromeOptions()
        for argument in ARGUMENTS:
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        self.browser = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
        self.open()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.browser.quit()

    def open(self, fragment=""):
        """Opens the page anew; a change of the fragment alone would not load it."""
        self.browser.get("about:blank")
        self.browser.get(self.address + fragment)

    def run(self, script, *arguments):
        return self.browser.execute_script(script, *arguments)

    def find(self, selector):
        return self.browser.find_element("css selector", selector)

    def texts(self, selector):
        return self.run("return [...document.querySelectorAll(arguments[0])].map(element => element.textContent)", selector)

    @property
    def search(self):
        return self.find("#search")

    def wait_for(self, condition):
        """Waits until something is so; says with an exception when it does not come."""
        end = time.monotonic() + 20
        while not condition():
            if time.monotonic() > end:
                raise AssertionError("the page does not become as it should")
            time.sleep(0.01)

    def get_requests(self):
        """The addresses that the page has asked for, but for what stands in it."""
        messages = [json.loads(entry["message"])["message"] for entry in self.browser.get_log("performance")]
        addresses = {message["params"]["request"]["url"].split("#")[0] for message in messages
                     if message["method"] == "Network.requestWillBeSent"}
        return {address for address in addresses if not address.startswith(("data:", "about:"))}
