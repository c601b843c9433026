# libsodium as an imported target: signature::sodium. It verifies the signatures of firmware images.
pkg_check_modules(sodium REQUIRED IMPORTED_TARGET libsodium)
add_library(signature::sodium ALIAS PkgConfig::sodium)
