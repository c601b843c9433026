#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QGenericPlugin>
#include <QWidget>

#include <chrono>

namespace {

/// Writes the steady clock's milliseconds to a file once a window has been painted, and is done.
class FirstPaintWatch : public QObject
{
public:
    explicit FirstPaintWatch(const QString &path) : m_path(path) {}

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *widget = event->type() == QEvent::Paint ? qobject_cast<QWidget *>(watched) : nullptr;
        if (widget && widget->isWindow() && widget->windowType() != Qt::ToolTip && !m_isSeen) {
            m_isSeen = true;
            // After this event: then all of the window is drawn and handed to the window system.
            QMetaObject::invokeMethod(
                this, [this] { note(); }, Qt::QueuedConnection);
        }
        return false;
    }

private:
    void note()
    {
        QCoreApplication::instance()->removeEventFilter(this);
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        QFile file(m_path);
        if (file.open(QIODevice::WriteOnly))
            file.write(QByteArray::number(std::chrono::duration<double, std::milli>(now).count(), 'f', 3) +
                       '\n');
    }

    QString m_path;
    bool m_isSeen = false;
};

} // namespace

/// Loaded for QT_QPA_GENERIC_PLUGINS=quillfirstpaint into an unmodified program; the file is named by
/// QUILLMARSH_FIRST_PAINT_FILE.
class FirstPaintPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "quillfirstpaint.json")

public:
    QObject *create(const QString &key, const QString &) override
    {
        const QString path = qEnvironmentVariable("QUILLMARSH_FIRST_PAINT_FILE");
        if (key.compare(QLatin1String("quillfirstpaint"), Qt::CaseInsensitive) != 0 || path.isEmpty())
            return nullptr;
        auto *watch = new FirstPaintWatch(path);
        QCoreApplication::instance()->installEventFilter(watch);
        return watch;
    }
};

#include "FirstPaintPlugin.moc"
