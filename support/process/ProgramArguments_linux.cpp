#include "support/process/ProgramArguments.h"

ProgramArguments::ProgramArguments(int argc, char *argv[]) : m_utf8(argv, argv + argc) {}
