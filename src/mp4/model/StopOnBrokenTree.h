#pragma once

// Ends the process at once and without a word: the sizes in a tree of atoms contradict each other. Those who watch the worker know
// such an end, and the file is not tried again. Programs that are built for fuzzing throw instead.
[[noreturn]] void StopOnBrokenTree();
