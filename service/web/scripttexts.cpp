#include "web/scripttexts.h"

#include "web/texts.h"
#include "web/typesigns.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velometer::ScriptTexts {

namespace {

struct Named
{
    QLatin1StringView name;
    Phrase phrase;
};

/// What scripts alone say; what a page says as well stands with its texts.
constexpr Named texts[] = {
    {"download"_L1, Texts::download},
    {"upload"_L1, Texts::upload},
    {"rtt"_L1, Texts::rtt},
    {"download_rtt"_L1, Texts::rttDownload},
    {"upload_rtt"_L1, Texts::rttUpload},
    {"tests"_L1, Texts::tests},
    {"test"_L1, Texts::testTitle},
    {"median"_L1, Texts::median},
    {"least"_L1, Texts::least},
    {"greatest"_L1, Texts::greatest},
    {"time"_L1, Texts::time},
    {"connection"_L1, Texts::connection},
    {"hour"_L1, {"Hour", "Stunde"}},
    {"remove"_L1, Texts::remove},
    {"device"_L1, Texts::device},
    {"service"_L1, Texts::service},
    {"average"_L1, Texts::average},
    {"left"_L1, Texts::left},
    {"right"_L1, Texts::right},
    {"empty"_L1,
     {"Nothing to draw in this period.", "In diesem Zeitraum gibt es nichts zu zeichnen."}},
    {"failed"_L1,
     {"The service did not answer. Please try again.",
      "Der Dienst hat nicht geantwortet. Bitte versuchen "
      "Sie es noch einmal."}},
    {"zoomIn"_L1, {"Zoom in", "Vergrössern"}},
    {"zoomOut"_L1, {"Zoom out", "Verkleinern"}},
    {"earlier"_L1, {"Earlier", "Früher"}},
    {"later"_L1, {"Later", "Später"}},
    {"whole"_L1, {"Whole period", "Ganzer Zeitraum"}},
    {"logarithmic"_L1, {"Logarithmic", "Logarithmisch"}},
    {"asTable"_L1, {"As a table", "Als Tabelle"}},
    {"chartOf"_L1, {"%1 from %2 to %3: %4", "%1 von %2 bis %3: %4"}},
    {"ofType"_L1, {"%1 median %2, %3 to %4", "%1 Median %2, %3 bis %4"}},
    {"localTime"_L1, {"hour, local time", "Stunde, Ortszeit"}},
    {"seconds"_L1, {"seconds", "Sekunden"}},
    {"map"_L1, Texts::map},
    {"markers"_L1, {"Tests", "Tests"}},
    {"accuracy"_L1, {"Accuracy", "Genauigkeit"}},
    {"grid"_L1, {"Median grid", "Median-Raster"}},
    {"paths"_L1, {"Paths of series", "Wege der Serien"}},
    {"layers"_L1, {"Layers of the map", "Ebenen der Karte"}},
    {"offline"_L1, {"Outline: Natural Earth", "Umrisse: Natural Earth"}},
    {"cluster"_L1, {"%1 tests here", "%1 Tests hier"}},
    {"cellMedian"_L1, {"Median of %1 tests: %2", "Median von %1 Tests: %2"}},
    {"noPositions"_L1, {"No test knows its position.", "Kein Test kennt seine Position."}},
    {"tracks"_L1, Texts::tracks},
    {"byType"_L1, {"By connection", "Nach Verbindung"}},
    {"bySignal"_L1, {"By signal", "Nach Signal"}},
    {"strengthFrom"_L1, {"from %1 dBm", "ab %1 dBm"}},
    {"strengthBelow"_L1, {"below %1 dBm", "unter %1 dBm"}},
    {"strengthUnknown"_L1, {"not known", "nicht bekannt"}},
    {"cellSignal"_L1, {"RSRP, median of %1 points: %2 dBm", "RSRP, Median von %1 Punkten: %2 dBm"}},
    {"trackPoints"_L1, {"%1 points", "%1 Punkte"}},
    {"trackOpen"_L1, {"not ended", "nicht beendet"}},
    {"minutes"_L1, {"%1 min", "%1 min"}},
    {"reallyRemove"_L1, {"Really delete?", "Wirklich löschen?"}},
    {"open"_L1, {"Open the test", "Test öffnen"}},
    {"copied"_L1, {"Copied", "Kopiert"}},
    {"copy"_L1, {"Copy", "Kopieren"}},
    {"oneTest"_L1, {"One test", "Ein Test"}},
    {"allTests"_L1, {"All tests", "Alle Tests"}},
    {"until"_L1, {"until %1", "bis %1"}},
    {"withPositions"_L1, {"with positions", "mit Positionen"}},
    {"withoutPositions"_L1, {"without positions", "ohne Positionen"}},
    {"revoke"_L1, {"Revoke", "Widerrufen"}},
    {"noShares"_L1, {"There are no links yet.", "Noch gibt es keine Links."}},
    {"saved"_L1, {"Saved.", "Gespeichert."}},
    {"deleted"_L1, {"%1 tests deleted.", "%1 Tests gelöscht."}},
    {"deleting"_L1,
     {"Deleting goes on; this takes a while.", "Das Löschen läuft noch eine Weile."}},
    {"gone"_L1, {"Everything is deleted.", "Alles ist gelöscht."}},
    {"mistyped"_L1, {"That is not what has to be typed.", "Das ist nicht, was einzugeben ist."}},
};

std::string make(Language language)
{
    QJsonObject object;
    for (const auto &each : texts) {
        object.insert(each.name, QString::fromUtf8(each.phrase.in(language)));
    }
    QJsonObject types;
    for (const auto type : ConnectionClasses::all()) {
        types.insert(ConnectionClasses::key(type),
                     QString::fromUtf8(TypeSigns::name(type).in(language)));
    }
    object.insert("types"_L1, types);
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

} // namespace

const std::string &json(Language language)
{
    static const std::string english = make(Language::English);
    static const std::string german = make(Language::German);
    return language == Language::German ? german : english;
}

} // namespace velometer::ScriptTexts
