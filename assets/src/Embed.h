// Takes a file into the binary, byte for byte, at compile time.
#pragma once

/// Defines `const std::byte name[]` and `const std::byte name##End[]` around the bytes of `file`, a
/// string literal, in read-only memory, aligned to 16, seen in this binary only.
#define ORVEL_EMBED(name, file)                                                                    \
    asm(".pushsection .rodata, \"a\"\n"                                                            \
        ".balign 16\n"                                                                             \
        ".global " #name "\n.hidden " #name "\n" #name ":\n"                                       \
        ".incbin \"" file "\"\n"                                                                   \
        ".global " #name "End\n.hidden " #name "End\n" #name "End:\n"                              \
        ".byte 0\n"                                                                                \
        ".popsection\n");                                                                          \
    extern "C" const std::byte name[];                                                             \
    extern "C" const std::byte name##End[]
