"""Runs the examples in the documents.   doc_blocks.py PROJECT BUILD CC CXX

C and C++ blocks are compiled and run; a block without main() is the body of a function in which `grid` is an object of the
National Grid. A text block that follows is the expected output, also of Python blocks, which load the library from the build
folder. The command-line program describes ini blocks. Lines that begin with $ are commands, followed by their output.
"""
import glob, os, re, subprocess, sys, tempfile

root, build, cc, cxx = sys.argv[1:]
os.chdir(root)
OPEN = '("examples/national_grid.ini", "NationalGrid")'
FRAMES = {
    "c": "#include <latigo/latigo.h>\n#include <stdio.h>\nint main(void) {\nGeodesyHandle grid = CreateFileGeodesy" + OPEN
         + ";\n%s\nreturn !DestroyGeodesy(grid);\n}\n",
    "cpp": "#include <cstdio>\n#include <latigo/latigo.hpp>\n#include <vector>\nint main() {\nlatigo::api::Geodesy grid ="
           " latigo::api::Geodesy::CreateFileGeodesy" + OPEN + ".value;\n%s\n}\n"}
COMPILERS = {"c": [cc, "-std=gnu11"], "cpp": [cxx, "-std=c++20"]}
OPTIONS = ["-Wall", "-Wextra", "-Werror", "-Iinclude", f"-L{build}", f"-Wl,-rpath,{build}", "-Wl,--disable-new-dtags", "-Wl,--no-as-needed"]
run = lambda *command: subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout
count = 0
with tempfile.TemporaryDirectory() as scratch:
    for page in ["README.md", *sorted(glob.glob("docs/*.md")), "include/latigo/latigo.h"]:
        text = open(page, encoding="utf-8").read()
        if page.endswith(".h"):  # the example at its head
            text = re.sub("^ [*] ?", "", text, flags=re.M).replace("@code{.c}", "```c").replace("@endcode", "```")
        for language, code, _, printed in re.findall(r"^```(\w+)\n(.*?)^```\n(\n```text\n(.*?)^```)?", text, re.M | re.S):
            source, count = f"{scratch}/block.{language}", count + 1
            with open(source, "w", encoding="utf-8") as file:
                file.write(code if "main(" in code or language not in FRAMES else FRAMES[language] % code)
            if language in FRAMES:
                run(*COMPILERS[language], source, *OPTIONS, "-llatigo", "-o", f"{scratch}/block")
                said = run(f"{scratch}/block")
                assert not printed or said == printed, (page, said)
            elif language == "python":
                said = run("env", f"LD_LIBRARY_PATH={build}", sys.executable, source)
                assert printed and said == printed, (page, said)
            elif language == "ini":
                run(f"{build}/latigo", "info", source, "-s", re.search(r"\[(.*)\]", code)[1])
        for command, printed in re.findall(r"^    \$ (.*)\n((?:    [^$].*\n)*)", text, re.M):
            said, count = run("sh", "-c", command.replace("build/release", build)), count + 1
            assert not printed or said == re.sub("^    ", "", printed, flags=re.M), (page, command, said)
assert count >= 14, count
