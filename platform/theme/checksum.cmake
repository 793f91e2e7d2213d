# Writes the header by which a program knows the theme that it was built with.
file(SHA256 "${THEME}" checksum)
file(WRITE "${HEADER}" "#pragma once\n\ninline constexpr auto* theme_sha256 = \"${checksum}\";\n")
