#include "app/LocaleCodec.h"

#include <QTextCodec>

void setLocaleCodec()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-16"));
}
