# What every target of ours compiles with: one interface target, so that code
# generated or found elsewhere stays out of it.
add_library(orcalin_opciones INTERFACE)
target_compile_options(orcalin_opciones INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wcast-align -Wunused -Wformat=2
    -fstack-protector-strong
    $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2>)
if(ORCALIN_SANITIZE)
    target_compile_options(orcalin_opciones INTERFACE
        -fsanitize=${ORCALIN_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all
        # The sanitizers' own instrumentation trips this one in library headers.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_link_options(orcalin_opciones INTERFACE -fsanitize=${ORCALIN_SANITIZE})
endif()
