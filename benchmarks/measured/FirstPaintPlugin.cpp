#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QGenericPlugin>
#include <QWidget>

#include <chrono>

namespace {

/// Writes the steady clock's milliseconds to a file when the first window has been painted.
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
            // Queued: after this event the whole window is drawn and passed to the window system.
            QMetaObject::invokeMethod(this, &FirstPaintWatch::note, Qt::QueuedConnection);
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

/// A plugin that Qt loads into an unmodified program if QT_QPA_GENERIC_PLUGINS is "quillfirstpaint". The
/// variable QUILLMARSH_FIRST_PAINT_FILE names the file.
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
