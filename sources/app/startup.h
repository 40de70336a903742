#pragma once

#include <QString>

/// What the programs do alike before their work begins and when it is done.
namespace velometer::StartUp {

/// First of all, before there is an application: the files made from now on are the owner's alone,
/// no file of ours takes the place of a closed standard descriptor, and of the toolkit's remarks
/// only those reach standard error that a user must read.
void prepareProcess();

/// The whole diagnostic log goes to standard error too.
void showLog();

/// The names under which settings and data are found; once there is an application.
void nameApplication();

/// Reads the deployment (@p configFile, empty for the usual places) and says where the store lies
/// (@p dataDir, empty for the platform's data directory). False, and @p error says why in one
/// sentence, when the deployment cannot be used.
bool loadDeployment(const QString &configFile, const QString &dataDir, QString *error);

/// The file that keeps a series for a restart, beside the store.
QString seriesFile();

/// The file that keeps a second program from recording a track into the same store.
QString trackLockFile();

/// How long the download and the upload of a test last, s: as long as figures are comparable,
/// unless VELOMETER_MEASUREMENT_SECONDS (1 to 6) shortens it to try something out.
int measurementDuration();

/// Closes the store. The last thing before the program ends.
void closeStore();

} // namespace velometer::StartUp
