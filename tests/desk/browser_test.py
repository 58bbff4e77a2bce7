#!/usr/bin/env python3
"""Makes the report of a bridge with a hostile title, opens it in Chromium from a file, and compares it
with the results that it was made from.

browser_test.py PROGRAM INPUT
"""
import base64
import json
import pathlib
import subprocess
import sys
import tempfile
import time

from selenium import webdriver
from selenium.common.exceptions import WebDriverException
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By

SIZE_LIMIT = 3_000_000
TITLE = """</script><img src=x onerror="document.title='taken over'"> & co"""
FLAGS = ("--headless=new", "--no-sandbox", "--use-gl=angle", "--use-angle=swiftshader",
         "--enable-unsafe-swiftshader", "--disable-dev-shm-usage", "--window-size=1300,1000")
# Of the picture: how many colours it has, and its bytes.
PICTURE = """
const canvas = document.querySelector("#scene canvas"), copy = document.createElement("canvas");
[copy.width, copy.height] = [canvas.width, canvas.height];
const context = copy.getContext("2d");
context.drawImage(canvas, 0, 0);
const pixels = new Uint32Array(context.getImageData(0, 0, copy.width, copy.height).data.buffer);
return [new Set(pixels).size, canvas.toDataURL()];
"""
NUMBERS = """return [...document.querySelectorAll("[data-v]")].map(
    e => [e.dataset.u, e.dataset.v, e.textContent]);"""
# Rows of the tables of a class: the values of their cells.
ROWS = """return [...document.querySelectorAll("table." + arguments[0])].map(t =>
    [...t.querySelectorAll("tr")].map(r => [...r.querySelectorAll("td[data-v]")].map(
        c => Number(c.dataset.v))).filter(r => r.length > 0));"""


def open_browser():
    options = webdriver.ChromeOptions()
    for flag in FLAGS:
        options.add_argument(flag)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    for attempt in range(3):  # a loaded machine may not start it within its own limit of time
        try:
            return webdriver.Chrome(options=options)
        except WebDriverException:
            if attempt == 2:
                raise


def numbers_in(value):
    if isinstance(value, dict):
        value = list(value.values())
    if isinstance(value, list):
        return set().union(*map(numbers_in, value)) if value else set()
    return {float(value)} if isinstance(value, (int, float)) and not isinstance(value, bool) else set()


def check_silence(browser, path):
    entries = browser.get_log("browser")
    assert not entries, entries
    for entry in browser.get_log("performance"):
        message = json.loads(entry["message"])["message"]
        if message["method"] == "Network.requestWillBeSent":
            url = message["params"]["request"]["url"]
            assert url == path.as_uri() or url.startswith("data:"), url


def check_text(browser, results):
    title = " ".join(results["title"].split())
    assert browser.title == title, browser.title
    assert " ".join(browser.find_element(By.TAG_NAME, "h1").text.split()) == title
    shown = browser.execute_script('return document.getElementById("input").textContent')
    assert shown == results["input"]["text"]
    assert browser.execute_script("""return document.querySelectorAll(
        "img, iframe, object, link, script[src], [onerror], [onload]").length""") == 0


def figures_of(results):
    """All numbers that the page may show, the lengths between places too."""
    bridge = results["bridge"]
    spans = {s["end_in"] - s["begin_in"] for s in bridge["spans"]}
    return numbers_in(results) | spans | {2.0 * bridge["half_distance_in"]}


def check_numbers(browser, known, system):
    """Every figure is one of the known, rounded in the units of its quantity."""
    units = json.loads(browser.find_element(By.ID, "units").get_attribute("textContent"))
    numbers = browser.execute_script(NUMBERS)
    assert len(numbers) > 100
    for quantity, value, text in numbers:
        assert float(value) in known, (quantity, value, text)
        _, factor, decimals = units[quantity][system]
        near = float(value) * factor
        assert abs(float(text.rstrip(" ~")) - near) <= 0.5001 * 10.0 ** -decimals, (value, text)


def check_tables(browser, results):
    assert not browser.execute_script("""return [...document.querySelectorAll("table")].filter(
        t => t.querySelectorAll("tbody td").length === 0 || /nan|inf|null|undefined/i.test(
            [...t.querySelectorAll("td[data-v]")].map(c => c.textContent).join())).length""")
    stages = len(results["stages"])
    rows = browser.execute_script(ROWS, "reactions")[0]
    reaction, envelope = [r["reaction"] for r in results["totals"]], results["envelopes"]["totals"]["reaction"]
    for i in range(len(results["places"]["support"]["position_in"])):
        for g in range(results["bridge"]["girders"]):
            row = rows.pop(0)[-stages - 2:]
            assert row == [t[g][i] for t in reaction] + [envelope["low"][g][i], envelope["high"][g][i]]
    camber = results["camber"]
    lines = [i for i, name in enumerate(camber["series"]) if name.endswith("web top")]
    tables = iter(browser.execute_script(ROWS, "screed"))
    for line in lines:
        assert [row[-1] for row in next(tables)] == camber["camber"][line]
        if stages > 1:
            assert [row[1:] for row in next(tables)] == [
                list(p) for p in zip(*(camber["to_come"][k][line] for k in range(stages - 1)))]
    members = sum(len(results["places"][results["tables"][t]["along"]]["begin_in"]) *
                  len(results["tables"][t]["series"]) for t in ("internal", "external", "laterals"))
    assert sum(len(t) for t in browser.execute_script(ROWS, "members")) == members
    for key, text in browser.execute_script("""return [...document.querySelectorAll(
            "[data-key]")].map(r => [r.dataset.key, r.querySelector("[data-v]").dataset.v])"""):
        pair = results["governing"][key.split(".")[1]]
        assert float(text) in (pair["high"]["value"], pair["low"]["value"]), key


def check_scene(browser):
    scene = browser.find_element(By.ID, "scene")
    browser.execute_script("arguments[0].scrollIntoView({block: 'center'})", scene)
    colors, before = browser.execute_script(PICTURE)
    assert colors > 50, f"{colors} colours: nothing is drawn"
    for change in (lambda: ActionChains(browser).drag_and_drop_by_offset(scene, 120, 30).perform(),
                   lambda: browser.execute_script("""const a = document.getElementById("amplitude");
                       a.value = -90; a.dispatchEvent(new Event("input"));"""),
                   lambda: browser.find_element(By.ID, "ghost").click(),
                   lambda: browser.find_element(By.ID, "whole").click()):
        change()
        _, after = browser.execute_script(PICTURE)
        assert after != before, "the picture stays as it was"
        before = after


def make_report(program, source, folder):
    """The report of the input under another title, with the check of buckling that it shows."""
    text = pathlib.Path(source).read_text(encoding="utf-8")
    bridge = folder / "bridge.txt"
    bridge.write_text(f"{text}\n!@ title {TITLE}\n!@ limit top_flange 20\n", encoding="utf-8")
    subprocess.run([program, "run", bridge, "--buckling", "history", "--stages", "2"], check=True)
    subprocess.run([program, "report", bridge], check=True)
    return folder / "report.html", json.loads((folder / "results.json").read_text(encoding="utf-8"))


def check_page(browser, path, results):
    browser.get(path.as_uri())
    time.sleep(1)
    known = figures_of(results)
    check_text(browser, results)
    check_numbers(browser, known, 0)
    check_tables(browser, results)
    browser.find_element(By.CSS_SELECTOR, "input[value=si]").click()
    check_numbers(browser, known, 1)
    browser.find_element(By.CSS_SELECTOR, "input[value=us]").click()
    check_numbers(browser, known, 0)
    check_scene(browser)
    pdf = base64.b64decode(browser.execute_cdp_cmd("Page.printToPDF", {})["data"])
    assert pdf.startswith(b"%PDF") and pdf.count(b"/Type /Page") > 8
    check_silence(browser, path)


def main():
    with tempfile.TemporaryDirectory() as folder:
        path, results = make_report(sys.argv[1], sys.argv[2], pathlib.Path(folder))
        assert results["title"] == TITLE, results["title"]
        assert path.stat().st_size < SIZE_LIMIT, path.stat().st_size
        browser = open_browser()
        try:
            check_page(browser, path, results)
        finally:
            browser.quit()


if __name__ == "__main__":
    main()
