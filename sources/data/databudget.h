#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <optional>

namespace velometer {

/// How many bytes the download and the upload of one test may move together, as the program counts
/// them: what its sockets read and write, and what takes the round-trip time meanwhile. What the
/// network and the kernel have under way when a share is used up comes on top. Sizes are shown in
/// decimal units, as contracts have them.
class DataBudget
{
    Q_DECLARE_TR_FUNCTIONS(DataBudget)

public:
    /// With less, neither measurement would tell anything.
    static constexpr qint64 minimum = 100'000;

    /// No limit.
    DataBudget() = default;
    /// No limit either when @p bytes is missing or below the minimum.
    explicit DataBudget(std::optional<qint64> bytes);

    /// The budget of the settings, which every program of the family follows; no limit when what
    /// stands there is no budget.
    static DataBudget remembered();
    void remember() const;

    /// None: no limit.
    std::optional<qint64> bytes() const { return limit; }
    /// Half of it, so that a fast download leaves something for the upload.
    std::optional<qint64> downloadShare() const;
    /// What a download of @p downloaded bytes has left.
    std::optional<qint64> uploadShare(qint64 downloaded) const;

    /// "50 MB"; empty when there is no limit.
    QString text() const;

    /// "at most 50 MB; ended early: download". @p phases as details hold them, "download,upload";
    /// other words are left out, and without any there is no text.
    QString endedEarly(const QString &phases) const;

    friend bool operator==(const DataBudget &, const DataBudget &) = default;

private:
    std::optional<qint64> limit;
};

} // namespace velometer
