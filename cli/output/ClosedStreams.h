#pragma once

/// Replaces the standard streams that the caller of the program has closed by pipes without another end.
/// Otherwise a file or device that is opened later would get a standard stream's number and be written to.
/// Call it before anything is opened.
void fillClosedStreams();
