#pragma once

/// Writes to the debug stream which TLS library the program has. Nothing depends on the result.
void writeSslReport();
