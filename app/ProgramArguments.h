#pragma once

#include <QByteArray>

#include <vector>

/// The program's arguments, its own name first, in UTF-8 on every platform. Made after the
/// application object, which takes the toolkit's own arguments out.
class ProgramArguments
{
public:
    /// What main() was given and the application object has left.
    ProgramArguments(int argc, char *argv[]);

    int count() const { return static_cast<int>(m_utf8.size()); }
    /// As main() has them; valid while this lives.
    std::vector<const char *> values() const;

private:
    std::vector<QByteArray> m_utf8;
};
