# Compiler settings shared by the library, its tests, benchmarks and tool.
#
# Floating-point results are part of the engine's contract, so contraction of a*b+c into fused
# multiply-adds is switched off everywhere and -ffast-math is never used.

if(QUORIMP_SANITIZE)
    set(QUORIMP_SANITIZER_FLAGS
        -fsanitize=address,undefined
        -fno-sanitize-recover=undefined
        -fno-omit-frame-pointer)
    add_compile_options(${QUORIMP_SANITIZER_FLAGS})
    add_link_options(${QUORIMP_SANITIZER_FLAGS})
endif()

function(quorimp_set_compile_options target)
    target_compile_options(${target} PRIVATE
        -ffp-contract=off
        -Wall
        -Wextra
        $<$<NOT:$<CONFIG:Debug>>:-O2>)
endfunction()
