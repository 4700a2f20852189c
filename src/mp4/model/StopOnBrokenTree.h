#pragma once

// Ends the process at once and without a word: the sizes in a tree of atoms contradict each other. Fuzzers bring a function of their
// own that throws.
[[noreturn]] void StopOnBrokenTree();
