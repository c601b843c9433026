#pragma once

#include "cli/ExitCode.h"
#include "cli/Finding.h"
#include "session/UpdateResult.h"

#include <QMap>
#include <QString>

#include <optional>

/// A connected device that the model table knows.
struct DeviceInfo
{
    enum class State {
        Ready,
        InBootloader,       ///< Its model is not known.
        NeedsIapProgrammer, ///< Ready, and updated through the IAP programmer.
        NoPermission,       ///< This user may not open it.
        SwitchedOff,        ///< The control list does not switch its model on.
    };

    /// Empty for a device in its bootloader.
    QString model;
    quint32 vendorId = 0;
    quint32 productId = 0;
    /// Bus and ports from the root hub on, as in "1-2.3"; empty where the system does not tell.
    QString position;
    State state = State::Ready;
    /// False for the event that a device is gone.
    bool connected = true;

    bool operator==(const DeviceInfo &other) const
    {
        return model == other.model && vendorId == other.vendorId && productId == other.productId &&
               position == other.position && state == other.state && connected == other.connected;
    }
};

/// The progress of a stage.
struct UpdateProgress
{
    int percent = 0;
    /// Of the download; not known of the flashers.
    std::optional<qint64> bytes;
    std::optional<qint64> total;
};

/// The end of an update, or of an attempt to begin one.
struct UpdateSummary
{
    UpdateResult result;
    ExitCode exitCode = ExitCode::Done;
    QString model;
    /// MD5 sum of the image; empty if there is none.
    QString sum;
    /// Seconds spent in each stage that was reached.
    QMap<UpdateStage, double> seconds;
};

/// Shows what happens: to a program as JSON lines, or to a person. May be called from any thread; no call
/// blocks.
class EventSink
{
public:
    virtual ~EventSink() = default;

    virtual void device(const DeviceInfo &device) = 0;
    virtual void stage(UpdateStage stage) = 0;
    virtual void progress(const UpdateProgress &progress) = 0;
    /// One line of the log that the window program would write.
    virtual void log(const QString &line) = 0;
    virtual void result(const UpdateSummary &summary) = 0;
    /// Something that was checked. Only "check" and "manifest verify" tell of findings.
    virtual void finding(const Finding & /*finding*/) {}
    /// A sentence for the person in front of the screen. Programs get it on standard error.
    virtual void tell(const QString &sentence) = 0;
};
