#include "support/process/ProgramArguments.h"

std::vector<const char *> ProgramArguments::values() const
{
    std::vector<const char *> pointers;
    pointers.reserve(m_utf8.size() + 1);
    for (const QByteArray &each : m_utf8)
        pointers.push_back(each.constData());
    pointers.push_back(nullptr);
    return pointers;
}
