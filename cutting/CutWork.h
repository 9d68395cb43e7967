#pragma once

// For the cutters: what they tell the CutProgress that is installed; nothing where there is none.

/// Work begins anew: so many bytes are going to be read.
void BeginWork(long long bytesInAll);

/// So many more bytes have been read. Throws CutError (Cancelled) when the cut has been cancelled.
void AddWork(long long bytes);

/// All is done.
void EndWork();
