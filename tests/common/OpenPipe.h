#pragma once

/// Opens a pipe: bytes written to `ends[1]` are read from `ends[0]`. Both are descriptors.
bool openPipe(int ends[2]);
