"""The commands of a page print what stands there; a text that ends early is the beginning.   minute.py BUILD PAGE [BLOCKS]

BLOCKS is the least number of blocks of commands that the page has."""
import os, re, subprocess, sys, tempfile

os.environ["PATH"] = os.path.realpath(sys.argv[1]) + ":" + os.environ["PATH"]
page = open(sys.argv[2], encoding="utf-8").read()
with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    blocks = re.findall(r"^```sh\n(.*?)^```\n(?:\n```text\n(.*?)^```)?", page, re.M | re.S)
    for commands, printed in blocks:
        said = subprocess.run(["sh", "-ec", commands], check=True, stdout=subprocess.PIPE, text=True).stdout
        assert printed and said.startswith(printed), (commands, said)
assert len(blocks) >= (int(sys.argv[3]) if len(sys.argv) > 3 else 4), len(blocks)
