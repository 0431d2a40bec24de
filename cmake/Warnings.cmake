# Linked PRIVATE by every target of ours, so that nothing leaks into those who use the library.
add_library(dataexport_warnings INTERFACE)
target_compile_options(dataexport_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor
    -Woverloaded-virtual -Wundef -Wcast-qual -Wformat=2
    $<$<BOOL:${DATAEXPORT_WERROR}>:-Werror>)
target_compile_definitions(dataexport_warnings INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH QT_STRICT_ITERATORS)

if(DATAEXPORT_SANITIZE)
    set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(dataexport_warnings INTERFACE ${sanitizers})
    target_link_options(dataexport_warnings INTERFACE ${sanitizers})
endif()
