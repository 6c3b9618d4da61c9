#!/usr/bin/env python3
"""Plays every input of the fuzz targets' corpora through zintra-sim, the way a user's
files reach it, and reports each run that hangs or that ends in exit code 3 (the
simulation failed) instead of 0, 1 (an expectation failed) or 2 (bad input):

  scenario       zintra-sim run on the file
  reg_file       the file applied before Outlook starts, and by a settings step while it runs
  settings_file  the file as the enterprise settings file the policy key names
  vcard, mime    zintra-sim import of the file, then zintra-sim run on what it wrote

Usage: tools/play-corpora.py [--sim PATH] [--timeout SECONDS] [--jobs N] [TARGET=DIR ...]
Without TARGET=DIR arguments it plays fuzz/corpus/<target>, fuzz/regressions/<target>
and build/fuzz/corpus/<target> (what the fuzzers kept). Exits 1 when any run failed so.
"""
import argparse
import concurrent.futures
import json
import os
import shutil
import subprocess
import sys
import tempfile

TARGETS = ["scenario", "reg_file", "settings_file", "vcard", "mime"]
ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
POLICY_KEY = "HKCU\\Software\\Policies\\Brellow\\Zintra"
SETTINGS_PATH = "C:\\Policies\\Zintra.txt"

PROFILE = {
    "user": "Jane Doe <jane.doe@contoso.com>",
    "stores": [{"folders": [
        {"name": "Clients", "type": "contact", "items": [
            {"id": "ann", "full_name": "Ann Lee", "emails": ["ann@fabrikam.com"]}]},
        {"name": "Inbox", "items": [
            {"id": "m1", "subject": "Hello", "from": "ann@fabrikam.com"}]}]}],
}


def scenario(**fields):
    doc = {"name": "corpus", "profile": PROFILE,
           "foldersets": [{"contacts": "Clients"}]}
    doc.update(fields)
    return doc


def run(sim, args, timeout, cwd):
    """(exit code, or "hang"), and the tail of the output."""
    try:
        done = subprocess.run([sim] + args, cwd=cwd, timeout=timeout, capture_output=True)
    except subprocess.TimeoutExpired:
        return "hang", ""
    return done.returncode, (done.stdout + done.stderr).decode("utf-8", "replace")[-600:]


def play(sim, target, path, timeout):
    """A list of (what, result, output) for every run of `path` that was not fine."""
    bad = []
    with tempfile.TemporaryDirectory(prefix="play-") as work:
        out = os.path.join(work, "out")
        runs = []
        if target == "scenario":
            runs.append(("run", ["run", os.path.abspath(path), "--quiet", "--out", out]))
        elif target == "reg_file":
            shutil.copy(path, os.path.join(work, "input.reg"))
            before = scenario(registry={"files": ["input.reg"]},
                              timeline=[{"do": "start"}, {"do": "wait", "for": "2m"},
                                        {"do": "quit"}])
            during = scenario(timeline=[
                {"do": "start"}, {"do": "wait", "for": "1m"},
                {"do": "settings", "registry": {"files": ["input.reg"]}},
                {"do": "wait", "for": "2m"}, {"do": "quit"}])
            for name, doc in (("before start", before), ("settings step", during)):
                file = os.path.join(work, name.replace(" ", "_") + ".json")
                with open(file, "w") as f:
                    json.dump(doc, f)
                runs.append((name, ["run", file, "--quiet", "--out", out]))
        elif target == "settings_file":
            with open(path, "rb") as f:
                text = f.read().decode("latin-1")
            doc = scenario(
                registry={"values": [{"key": POLICY_KEY, "name": "EnterpriseSettingsPath",
                                      "string": SETTINGS_PATH}]},
                files=[{"path": SETTINGS_PATH, "text": text}],
                timeline=[{"do": "start"}, {"do": "wait", "for": "2m"}, {"do": "quit"}])
            file = os.path.join(work, "settings.json")
            with open(file, "w") as f:
                json.dump(doc, f)
            runs.append(("settings file", ["run", file, "--quiet", "--out", out]))
        else:
            source = os.path.join(work, os.path.basename(path))
            shutil.copy(path, source)
            imported = os.path.join(work, "imported.json")
            result, output = run(sim, ["import", source, "-o", imported], timeout, work)
            if result not in (0, 2):
                bad.append(("import", result, output))
            elif result == 0:
                runs.append(("imported, run", ["run", imported, "--quiet", "--out", out]))
        for what, args in runs:
            result, output = run(sim, args, timeout, work)
            if result not in (0, 1, 2):
                bad.append((what, result, output))
    return bad


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--sim", default=os.path.join(ROOT, "build/default/tools/zintra-sim/zintra-sim"))
    parser.add_argument("--timeout", type=float, default=60)
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("dirs", nargs="*", metavar="TARGET=DIR")
    options = parser.parse_args()
    dirs = [d.split("=", 1) for d in options.dirs]
    if not dirs:
        for target in TARGETS:
            for base in ("fuzz/corpus", "fuzz/regressions", "build/fuzz/corpus"):
                dirs.append((target, os.path.join(ROOT, base, target)))
    inputs = []
    for target, folder in dirs:
        if os.path.isdir(folder):
            inputs += [(target, os.path.join(folder, name)) for name in sorted(os.listdir(folder))]
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        futures = {pool.submit(play, options.sim, t, p, options.timeout): (t, p) for t, p in inputs}
        for future in concurrent.futures.as_completed(futures):
            target, path = futures[future]
            for what, result, output in future.result():
                failed += 1
                print(f"{target}: {os.path.relpath(path, ROOT)} ({what}): "
                      f"{'hangs' if result == 'hang' else 'exit ' + str(result)}\n  {output.strip()}")
    print(f"{len(inputs)} inputs played, {failed} runs hung or failed as the simulation")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
