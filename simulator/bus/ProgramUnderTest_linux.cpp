#include "simulator/bus/ProgramUnderTest_linux.h"

#include <QJsonArray>
#include <QProcessEnvironment>

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

ProgramUnderTest::ProgramUnderTest()
{
    // A flasher that is still at work when its program has ended goes with it.
    connect(this, qOverload<int, ExitStatus>(&QProcess::finished), this, [this] { killGroup(); });
}

ProgramUnderTest::~ProgramUnderTest()
{
    killAll();
}

QString ProgramUnderTest::run(const QJsonObject &request, const QString &busAddress)
{
    if (isRunning())
        return QStringLiteral("a program is running already");
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QUILLMARSH_SIM_BUS"), busAddress);
    const QJsonObject changes = request.value(QLatin1String("environment")).toObject();
    for (auto variable = changes.begin(); variable != changes.end(); ++variable) {
        if (variable.value().isNull())
            environment.remove(variable.key());
        else
            environment.insert(variable.key(), variable.value().toString());
    }
    setProcessEnvironment(environment);
    setWorkingDirectory(request.value(QLatin1String("workingDirectory")).toString());
    const auto fileOr = [&request](QLatin1String key) {
        const QString file = request.value(key).toString();
        return file.isEmpty() ? nullDevice() : file;
    };
    setStandardInputFile(nullDevice());
    setStandardOutputFile(fileOr(QLatin1String("stdout")));
    setStandardErrorFile(fileOr(QLatin1String("stderr")));
    QStringList arguments;
    for (const QJsonValue &argument : request.value(QLatin1String("arguments")).toArray())
        arguments.append(argument.toString());
    start(request.value(QLatin1String("program")).toString(), arguments);
    if (!waitForStarted(30000))
        return QStringLiteral("cannot start the program: ") + errorString();
    m_group = processId();
    m_hasRun = true;
    return QString();
}

void ProgramUnderTest::killGroup()
{
    if (m_group > 1)
        ::kill(static_cast<pid_t>(-m_group), SIGKILL);
    m_group = 0;
}

void ProgramUnderTest::killAll()
{
    killGroup();
    if (isRunning())
        waitForFinished(10000);
}

QJsonObject ProgramUnderTest::describe() const
{
    const bool ended = m_hasRun && !isRunning();
    return {{QStringLiteral("running"), isRunning()},
            {QStringLiteral("exitCode"), ended ? QJsonValue(exitCode()) : QJsonValue()},
            {QStringLiteral("signalled"), ended && exitStatus() == CrashExit}};
}

void ProgramUnderTest::setupChildProcess()
{
    setpgid(0, 0);
    // The controller itself takes these in another way; its program shall end by them as usual.
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    // If the controller is killed, its program goes as well.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}
