#pragma once

#include <QByteArray>

#include <vector>

/// The program's arguments in UTF-8 on every platform, beginning with the program's name. Construct it after
/// the application object, which removes Qt's own arguments.
class ProgramArguments
{
public:
    /// Takes main()'s arguments as the application object left them.
    ProgramArguments(int argc, char *argv[]);

    int count() const { return static_cast<int>(m_utf8.size()); }
    /// Returns the arguments in the form of main()'s `argv`, with a null pointer at the end. The pointers are
    /// valid as long as this object exists.
    std::vector<const char *> values() const;

private:
    std::vector<QByteArray> m_utf8;
};
