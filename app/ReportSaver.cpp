#include "app/ReportSaver.h"

#include "checks/Texts.h"
#include "report/ReportMaker.h"
#include "report/ReportText.h"
#include "support/log/LogFile.h"
#include "support/process/ShutdownFlag.h"
#include "widgets/TextWindow.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QStandardPaths>
#include <QTextEdit>
#include <QtConcurrent>

namespace {

/// Returns the tools of the window program, which looks for them only beside itself.
ToolFiles toolsBeside(const QString &folder)
{
    return ToolFiles::findIn({folder}, {folder + QLatin1String("/qmake")});
}

QString askForFile(QWidget *owner)
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QFileDialog dialog(owner, Texts::pick("Save report", "保存报告"), folder,
                       Texts::pick("Report (*.json)", "报告 (*.json)"));
    dialog.setObjectName(QStringLiteral("reportDialog"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("json"));
    dialog.selectFile(ReportText::proposedName());
    QObject::connect(&ShutdownFlag::instance(), &ShutdownFlag::raised, &dialog, &QDialog::reject);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

} // namespace

ReportSaver::ReportSaver(Dependencies dependencies) : m_dependencies(std::move(dependencies))
{
    m_pool.setMaxThreadCount(1);
    QTextEdit *view = m_dependencies.window.textView();
    view->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(view, &QWidget::customContextMenuRequested, &m_watcher,
                     [this](const QPoint &place) { showMenu(place); });
    QObject::connect(&m_watcher, &QFutureWatcher<Saved>::finished, &m_watcher,
                     [this] { showResult(m_watcher.result()); });
}

ReportSaver::~ReportSaver()
{
    m_watcher.disconnect();
    m_pool.waitForDone();
}

void ReportSaver::showMenu(const QPoint &place)
{
    QTextEdit *view = m_dependencies.window.textView();
    m_menu.reset(view->createStandardContextMenu(place));
    m_menu->setObjectName(QStringLiteral("logMenu"));
    m_menu->addSeparator();
    QAction *action =
        m_menu->addAction(m_watcher.isRunning() ? Texts::pick("The report is being made…", "正在生成报告…")
                                                : Texts::pick("Save report…", "保存报告…"));
    action->setObjectName(QStringLiteral("saveReport"));
    action->setEnabled(!m_watcher.isRunning());
    QObject::connect(action, &QAction::triggered, &m_watcher, [this] { askAndSave(); });
    m_menu->popup(view->viewport()->mapToGlobal(place));
}

void ReportSaver::askAndSave()
{
    const QString path = askForFile(&m_dependencies.window);
    // The menu may have been used a second time while the dialog was open.
    if (!path.isEmpty() && !m_watcher.isRunning() && !ShutdownFlag::instance().isRaised())
        save(path);
}

void ReportSaver::save(const QString &path)
{
    ReportMaker::Source source{m_dependencies.usb,
                               m_dependencies.hid,
                               m_dependencies.lock,
                               m_dependencies.usbReady,
                               toolsBeside(m_dependencies.paths.applicationDir),
                               m_dependencies.paths.temporaryFolder,
                               QFileInfo(LogFile::updateLogPath()).absoluteFilePath(),
                               Texts::pick("en", "zh"),
                               m_dependencies.lastRun()};
    m_watcher.setFuture(QtConcurrent::run(&m_pool, [source, path] {
        const QByteArray report = ReportMaker::make(source);
        return report.isEmpty() ? Saved{path, QString(), true}
                                : Saved{path, ReportText::save(report, path), false};
    }));
}

void ReportSaver::showResult(const Saved &saved)
{
    if (saved.isAbandoned || ShutdownFlag::instance().isRaised())
        return;
    if (!m_box) {
        m_box = new QMessageBox(&m_dependencies.window);
        m_box->setObjectName(QStringLiteral("reportBox"));
        m_box->setWindowTitle(m_dependencies.window.windowTitle());
        m_box->setStandardButtons(QMessageBox::Ok);
        QObject::connect(&ShutdownFlag::instance(), &ShutdownFlag::raised, m_box.data(), &QDialog::reject);
    }
    m_box->setIcon(saved.problem.isEmpty() ? QMessageBox::Information : QMessageBox::Warning);
    m_box->setText(ReportText::describeSaving(saved.path, saved.problem));
    m_box->open();
}
