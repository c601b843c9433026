#pragma once

class QTextCodec;

/// The codec of the system's own 8-bit texts: what command-line tools print, and what system calls
/// that take bytes expect. UTF-8 where the toolkit has no codec of that name. Any thread.
///
/// Not the locale's codec: that one need not be 8-bit.
const QTextCodec &systemCodec();
