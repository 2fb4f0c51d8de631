// The mark of every function that may run on the audio thread or the analysing thread.
#pragma once

/// A function with this mark allocates nothing, opens nothing, throws nothing, logs nothing and
/// runs a bounded loop. It takes no lock and makes no system call, except where its own comment
/// names the one record exchange. Compilers that can check the promise do so; others read it as
/// documentation, and the allocation and system-call tests hold it.
#if defined(__has_cpp_attribute) && __has_cpp_attribute(clang::nonblocking)
#define ORVEL_NONBLOCKING [[clang::nonblocking]]
#else
#define ORVEL_NONBLOCKING
#endif
