"""The public headers compile in every language that they promise, and their declarations carry the calling convention.
   headers_test.py PROJECT [CC CXX]   without compilers: under another default convention, for 32-bit Windows
"""
import shutil, subprocess, sys

root, *compilers = sys.argv[1:]
STRICT = ["-Wall", "-Wextra", "-Wpedantic", "-Werror", "-fsyntax-only", f"-I{root}/include"]
HEADERS = "#include <latigo/latigo.h>\n#include <latigo/latigo_errors.h>\n"
CALLS = "int32_t Use(const GeodesyParams* p) { double x, y; return GeoXY(CreateGeodesy(p), &x, &y, LATIGO_KIND_RSO, 0); }\n"
# A program with macros of the standard library's names, the namespace opened, and warnings that projects turn on.
PICKY = ["-Wconversion", "-Wsign-conversion", "-Wshadow", "-Wold-style-cast", "-Weffc++", "-Wzero-as-null-pointer-constant",
         "-fno-exceptions", "-fno-rtti"]
CLASS = "".join(f"#include <{header}>\n" for header in ("algorithm", "array", "iterator", "limits", "memory", "string", "utility")) + """
#define min(a, b) ((a) < (b) ? (a) : (b))
#define max(a, b) ((a) < (b) ? (b) : (a))
#include <latigo/latigo.hpp>
using namespace latigo::api;
bool Use(Span<const Position> from, Span<Grid> to) {
  Geodesy grid;
  return grid.GeoXY(from, to) && grid.GetGeoid() && GetGeodesyVersion() > 0;
}
"""
compile = lambda command, language, text: subprocess.run([*command, *STRICT, "-x", language, "-"], input=text, text=True, check=True)

if compilers:
    for language, compiler, standards in zip(("c", "c++"), compilers, (("c99", "c11", "c17"), ("c++98", "c++11", "c++17", "c++20"))):
        for standard in standards:
            compile([compiler, f"-std={standard}"], language, HEADERS + CALLS)
    for standard in "c++17", "c++20":
        compile([compilers[1], f"-std={standard}"], "c++", "#include <latigo/latigo.hpp>\n" + CALLS)
        compile([compilers[1], f"-std={standard}", *PICKY], "c++", CLASS)
    sys.exit()

names = [line.split()[1] for line in open(f"{root}/src/frame/exports.list")]
assert len(names) == 29
targets = [["clang", "--target=i686-w64-mingw32", "-ffreestanding"], ["i686-w64-mingw32-gcc"]]
targets = [target for target in targets if shutil.which(target[0])]
for target in targets:
    compile([*target, "-mrtd"], "c", "#include <latigo/latigo.h>\n" + "".join(f"extern __typeof__({name}) __attribute__((cdecl)) *of{name};\n"
                                                       f"__typeof__({name}) __attribute__((cdecl)) *of{name} = {name};\n" for name in names))
if not targets:
    print("neither clang nor i686-w64-mingw32-gcc is installed")
    sys.exit(77)
