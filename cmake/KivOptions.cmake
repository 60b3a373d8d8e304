# What every target of the project is compiled with: link to kivoptions privately.

add_library(kivoptions INTERFACE)

target_compile_options(kivoptions INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
    -Wold-style-cast -Wcast-qual -Wformat=2 -Wnon-virtual-dtor -Woverloaded-virtual
    # Sizes computed from angles must not depend on the optimiser.
    -ffp-contract=off
    # Error lines name the source relative to the repository, wherever it is built.
    -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)
if(KIVWIDGETS_WERROR)
    target_compile_options(kivoptions INTERFACE -Werror)
endif()

# Functions that these versions of Qt deprecate are not declared at all.
set(kiv_deprecated_before_qt5 0x050F00)
set(kiv_deprecated_before_qt6 0x060400)
target_compile_definitions(kivoptions INTERFACE
    QT_DISABLE_DEPRECATED_BEFORE=${kiv_deprecated_before_qt${KIVWIDGETS_QT}}
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
    QT_DEPRECATED_WARNINGS QT_STRICT_ITERATORS)

# The linker checks that a shared library names all that it needs. The runtime of clang's sanitizers is part of the
# program alone.
set(kiv_complete_library -Wl,--no-undefined)
if(CMAKE_CXX_COMPILER_ID MATCHES Clang AND CMAKE_CXX_FLAGS MATCHES "-fsanitize=")
    set(kiv_complete_library)
endif()
