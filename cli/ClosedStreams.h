#pragma once

/// Opens the standard streams that the caller has closed, as ones that lead nowhere, so that no file or
/// device that is opened later takes their place and is written to. Call it before anything is opened.
void fillClosedStreams();
