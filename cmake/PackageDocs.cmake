# The package's copies of the guides: the sources' README becomes reference.md beside getting-started.md
# and tools.md, with links that work in the unpacked folder (pictures sit beside it; files that are only
# in the sources are named, not linked).
file(READ ${SOURCE_DIR}/README.md readme)
string(REPLACE "](docs/" "](" readme "${readme}")
string(REGEX REPLACE "\\[([^]]*)\\]\\((bench|samples)/[^)]*\\)" "\\1 (in the sources)" readme "${readme}")
file(WRITE ${OUT}/reference.md
    "<!-- The library's reference: the README of its sources. Commands that name scripts/ and build/ "
    "run in the sources, not in this package. -->\n${readme}")
file(READ ${SOURCE_DIR}/docs/getting-started.md guide)
string(REPLACE "](../README.md)" "](reference.md)" guide "${guide}")
file(WRITE ${OUT}/getting-started.md "${guide}")
