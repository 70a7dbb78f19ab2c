"""README's first conversion, and the page on conversions, with the programs as they are installed.   first_conversion.py PROJECT BUILD

scripts/test-install does the same with an installed tree."""
import glob, os, shutil, subprocess, sys, tempfile

root, build = sys.argv[1:]
with tempfile.TemporaryDirectory() as prefix:
    os.mkdir(prefix + "/bin")
    for path in [f"{build}/latigo", f"{build}/latigo-system", *glob.glob(f"{build}/liblatigo.so*")]:
        shutil.copy(path, prefix + "/bin")  # which have the library beside them
    shutil.copytree(root + "/examples", prefix + "/share/latigo/examples")
    for page, blocks in ("README.md", "3"), ("docs/convert.md", "3"):
        subprocess.run([sys.executable, root + "/tests/grid/minute.py", prefix + "/bin", f"{root}/{page}", blocks], check=True)
