#pragma once

/// Sets the standard streams to binary mode: some platforms otherwise convert line endings.
void useByteStreams();
