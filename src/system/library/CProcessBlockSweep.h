#pragma once

#include <sys/types.h>

// Removes the blocks of processes that ended without removing their own, as a crashed or killed worker does. Only blocks of the
// user are touched.
void SweepProcessBlocks(pid_t ownProcess);
