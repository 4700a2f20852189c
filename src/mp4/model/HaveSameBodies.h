#pragma once

class CAtom;

// Whether two atoms have the same type and the same bytes behind their headers, with all that is in them. Bodies of more than some
// MiB are not compared, and count as different.
bool HaveSameBodies(CAtom& one, CAtom& other);
