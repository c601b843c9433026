#include "checks/Texts.h"

#include <QLocale>

namespace {

Texts::Language current = Texts::Language::English;

} // namespace

void Texts::setLanguage(Language language)
{
    current = language;
}

Texts::Language Texts::languageOfSystem()
{
    return QLocale::system().country() == QLocale::China ? Language::Chinese : Language::English;
}

QString Texts::pick(const char *english, const char *chinese)
{
    return QString::fromUtf8(current == Language::Chinese ? chinese : english);
}
