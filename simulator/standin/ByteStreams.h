#pragma once

/// Has the standard streams pass bytes as they are: some platforms change line ends in text.
void useByteStreams();
