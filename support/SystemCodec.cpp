#include "support/SystemCodec.h"

#include <QTextCodec>

const QTextCodec &systemCodec()
{
    static const QTextCodec *const codec = [] {
        const QTextCodec *system = QTextCodec::codecForName("System");
        return system ? system : QTextCodec::codecForName("UTF-8");
    }();
    return *codec;
}
