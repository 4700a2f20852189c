#pragma once

// Takes from this process all but computing: from here on it can take memory, write to the files that it has open, and end. Every other
// call of the system fails with EPERM, for all threads and for good. Its memory, its time and the size of what it writes are limited too.
//
// Throws std::runtime_error with a sentence where the system does not allow that; the process is then not to look at what a stranger made.
void LockProcess();
