#pragma once

#include <sys/types.h>

// Removes the blocks of processes that ended without removing them, because they crashed or were killed. Only the user's own
// blocks are touched.
void SweepProcessBlocks(pid_t ownProcess);
