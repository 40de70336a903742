#pragma once

#include "web/language.h"

/// Every text of the pages, in both languages beside each other.
namespace velometer::Texts {

// The frame around every page.
inline constexpr Phrase skip{"Skip to the content", "Zum Inhalt springen"};
inline constexpr Phrase navigation{"Pages", "Seiten"};
inline constexpr Phrase yours{"Your measurements", "Ihre Messungen"};
inline constexpr Phrase compare{"Compare", "Vergleichen"};
inline constexpr Phrase statistics{"Statistics", "Statistik"};
inline constexpr Phrase otherLanguage{"Deutsch", "English"};
inline constexpr Phrase licences{"Licences of the libraries", "Lizenzen der Bibliotheken"};
inline constexpr Phrase privacy{
    "No cookies, no tracking. The address of your page is its key: keep it to yourself and "
    "share a link instead.",
    "Keine Cookies, kein Tracking. Die Adresse Ihrer Seite ist ihr Schlüssel: Behalten Sie "
    "sie für sich und teilen Sie lieber einen Link."};
inline constexpr Phrase nothingTitle{"Nothing here", "Hier ist nichts"};
inline constexpr Phrase unknownUser{
    "We know no measurements under this address. Please open the page from your device, "
    "which knows the right one.",
    "Unter dieser Adresse kennen wir keine Messungen. Bitte öffnen Sie die Seite von "
    "Ihrem Gerät aus; es kennt die richtige Adresse."};
inline constexpr Phrase unknownShare{
    "This link has expired, was revoked or never existed. Please ask whoever sent it "
    "for a new one.",
    "Dieser Link ist abgelaufen, wurde widerrufen oder war nie gültig. Bitte fragen "
    "Sie den Absender nach einem neuen."};
inline constexpr Phrase deletedUser{
    "Everything under this address has been deleted, as its owner wished.",
    "Alles unter dieser Adresse wurde gelöscht, wie es sein Besitzer wollte."};
inline constexpr Phrase unknownTest{"There is no such test; it may have been deleted.",
                                    "Diesen Test gibt es nicht; vielleicht wurde er gelöscht."};
inline constexpr Phrase unknownPage{"There is no such page.", "Diese Seite gibt es nicht."};

// What is measured, and how it is named.
inline constexpr Phrase download{"Download", "Download"};
inline constexpr Phrase upload{"Upload", "Upload"};
inline constexpr Phrase rtt{"RTT", "RTT"};
inline constexpr Phrase rttDownload{"RTT under download", "RTT beim Download"};
inline constexpr Phrase rttUpload{"RTT under upload", "RTT beim Upload"};
inline constexpr Phrase downloadMedian{"Download median", "Download, Median"};
inline constexpr Phrase uploadMedian{"Upload median", "Upload, Median"};
inline constexpr Phrase rttMedian{"RTT median", "RTT, Median"};
inline constexpr Phrase middle{"10 % to 90 %: %1", "10 % bis 90 %: %1"};
inline constexpr Phrase between{"%1 to %2", "%1 bis %2"};
inline constexpr Phrase dash{"%1 – %2", "%1 – %2"};
inline constexpr Phrase tests{"Tests", "Tests"};
inline constexpr Phrase oneTest{"1 test", "1 Test"};
inline constexpr Phrase manyTests{"%1 tests", "%1 Tests"};
inline constexpr Phrase moved{"%1 moved", "%1 übertragen"};
inline constexpr Phrase dataMoved{"Data moved", "Übertragene Daten"};
inline constexpr Phrase period{"%1 to %2", "%1 bis %2"};
inline constexpr Phrase median{"Median", "Median"};
inline constexpr Phrase notVerified{"device only", "nur Gerät"};
inline constexpr Phrase contradicting{"contradicts the service", "widerspricht dem Dienst"};
inline constexpr Phrase bothEnds{"✓ both ends", "✓ beide Seiten"};
inline constexpr Phrase lateMark{
    "The service was too busy to keep up; the link may be faster.",
    "Der Dienst war überlastet; die Verbindung ist vielleicht schneller."};
inline constexpr Phrase none{
    "There are no measurements yet. Start one on your device; it appears here at once.",
    "Noch keine Messungen. Starten Sie eine auf Ihrem Gerät; sie erscheint sofort hier."};
inline constexpr Phrase noneFiltered{
    "No measurement fits these filters. Take one away to see more.",
    "Keine Messung passt zu diesen Filtern. Entfernen Sie einen, um mehr zu sehen."};
inline constexpr Phrase unknown{"unknown", "unbekannt"};

// Connection classes and places.
inline constexpr Phrase wlan{"WLAN", "WLAN"};
inline constexpr Phrase gsm{"Mobile (GSM)", "Mobil (GSM)"};
inline constexpr Phrase umts{"Mobile (UMTS)", "Mobil (UMTS)"};
inline constexpr Phrase lte{"Mobile (LTE)", "Mobil (LTE)"};
inline constexpr Phrase nr{"Mobile (5G)", "Mobil (5G)"};
inline constexpr Phrase ethernet{"Ethernet", "Ethernet"};
inline constexpr Phrase cdma{"Mobile (CDMA)", "Mobil (CDMA)"};
inline constexpr Phrase bluetooth{"Bluetooth", "Bluetooth"};
inline constexpr Phrase wimax{"WiMAX", "WiMAX"};
inline constexpr Phrase mixed{"Several", "Mehrere"};
inline constexpr Phrase otherType{"Other", "Andere"};
inline constexpr Phrase indoor{"Indoor", "Drinnen"};
inline constexpr Phrase outdoor{"Outdoor", "Draussen"};
inline constexpr Phrase train{"Train", "Zug"};
inline constexpr Phrase car{"Car", "Auto"};
inline constexpr Phrase otherPlace{"Other", "Anderswo"};

// Filters.
inline constexpr Phrase filters{"Filters", "Filter"};
inline constexpr Phrase ranges{"Period", "Zeitraum"};
inline constexpr Phrase day{"Day", "Tag"};
inline constexpr Phrase week{"Week", "Woche"};
inline constexpr Phrase month{"Month", "Monat"};
inline constexpr Phrase year{"Year", "Jahr"};
inline constexpr Phrase all{"All", "Alle"};
inline constexpr Phrase from{"From", "Von"};
inline constexpr Phrase to{"To", "Bis"};
inline constexpr Phrase connection{"Connection", "Verbindung"};
inline constexpr Phrase server{"Server", "Server"};
inline constexpr Phrase series{"Series", "Serie"};
inline constexpr Phrase place{"Place", "Ort"};
inline constexpr Phrase operatorName{"Operator", "Betreiber"};
inline constexpr Phrase anyType{"All connections", "Alle Verbindungen"};
inline constexpr Phrase anyServer{"All servers", "Alle Server"};
inline constexpr Phrase anySeries{"All series", "Alle Serien"};
inline constexpr Phrase anyPlace{"All places", "Alle Orte"};
inline constexpr Phrase anyOperator{"All operators", "Alle Betreiber"};
inline constexpr Phrase seriesNumber{"Series %1", "Serie %1"};
inline constexpr Phrase verifiedOnly{"Confirmed by both ends", "Von beiden Seiten bestätigt"};
inline constexpr Phrase apply{"Apply", "Anwenden"};
inline constexpr Phrase clear{"Clear all filters", "Alle Filter entfernen"};

// The user's page.
inline constexpr Phrase summary{"Summary", "Übersicht"};
inline constexpr Phrase byType{"By connection", "Nach Verbindung"};
inline constexpr Phrase byTypeCaption{
    "Medians by connection, in brackets what 10 % and 90 % stay below",
    "Mediane nach Verbindung, in Klammern was 10 % und 90 % nicht überschreiten"};
inline constexpr Phrase overTime{"Over time", "Im Verlauf"};
inline constexpr Phrase overTimeHint{
    "Median of each interval, lines from least to greatest. Drag to zoom, Shift and drag "
    "to move; with the keyboard + and −, arrows, and 0 for all.",
    "Median jedes Abschnitts, Striche vom kleinsten zum grössten Wert. Ziehen "
    "vergrössert, mit Umschalttaste verschiebt es; mit der Tastatur + und −, Pfeile, "
    "und 0 für alles."};
inline constexpr Phrase byHour{"By hour of the day", "Nach Tageszeit"};
inline constexpr Phrase byHourHint{
    "When is the network slow? Median, and the half of all tests around it.",
    "Wann ist das Netz langsam? Median und die Hälfte aller Tests um ihn herum."};
inline constexpr Phrase spread{"Spread by connection", "Streuung nach Verbindung"};
inline constexpr Phrase spreadHint{
    "Box: the middle half; lines: least to greatest. Logarithmic scale.",
    "Kasten: die mittlere Hälfte; Striche: kleinster bis grösster Wert. Logarithmische "
    "Skala."};
inline constexpr Phrase map{"Map", "Karte"};
inline constexpr Phrase tracks{"Tracks", "Tracks"};
inline constexpr Phrase tracksHint{
    "Recorded ways with the network heard on them. Nobody but you sees them.",
    "Aufgezeichnete Wege mit dem Netz, das dort zu hören war. Nur Sie sehen sie."};
inline constexpr Phrase mapHint{"The same tests are listed in the table below.",
                                "Dieselben Tests stehen unten in der Tabelle."};
inline constexpr Phrase needsScript{
    "Charts and map need JavaScript. Everything else works without.",
    "Diagramme und Karte brauchen JavaScript. Alles andere geht auch ohne."};
inline constexpr Phrase list{"All tests", "Alle Tests"};
inline constexpr Phrase listCaption{"%1 to %2 of %3 tests. Times are UTC.",
                                    "%1 bis %2 von %3 Tests. Zeiten in UTC."};
inline constexpr Phrase listCaptionOpen{"%1 of %2 tests. Times are UTC.",
                                        "%1 von %2 Tests. Zeiten in UTC."};
inline constexpr Phrase time{"Time", "Zeit"};
inline constexpr Phrase seriesTest{"Series / test", "Serie / Test"};
inline constexpr Phrase connectionPlace{"Connection, place", "Verbindung, Ort"};
inline constexpr Phrase checked{"Checked", "Geprüft"};
inline constexpr Phrase note{"Note", "Notiz"};
inline constexpr Phrase sortBy{"Sort by %1", "Nach %1 sortieren"};
inline constexpr Phrase firstPage{"First page", "Erste Seite"};
inline constexpr Phrase nextPage{"Next page", "Nächste Seite"};
inline constexpr Phrase pageLinks{"Pages of the list", "Seiten der Liste"};
inline constexpr Phrase exportAs{"Export", "Exportieren"};
inline constexpr Phrase exportHint{"Exactly what is filtered, %1", "Genau was gefiltert ist, %1"};
inline constexpr Phrase share{"Share", "Teilen"};
inline constexpr Phrase shareHint{
    "A link through which others see what is filtered now: to read only, without your "
    "address, device and log.",
    "Ein Link, über den andere sehen, was jetzt gefiltert ist: nur zum Lesen, ohne Ihre "
    "Adresse, Gerät und Protokoll."};
inline constexpr Phrase shareTestHint{
    "A link through which others see this test: to read only, without your address, "
    "device and log.",
    "Ein Link, über den andere diesen Test sehen: nur zum Lesen, ohne Ihre Adresse, "
    "Gerät und Protokoll."};
inline constexpr Phrase sharePositions{"with positions and map", "mit Positionen und Karte"};
inline constexpr Phrase shareDays{"Days until it expires", "Tage, bis er abläuft"};
inline constexpr Phrase shareMake{"Make a link", "Link erzeugen"};
inline constexpr Phrase shareList{"Your links", "Ihre Links"};
inline constexpr Phrase remove{"Delete", "Löschen"};
inline constexpr Phrase removeFiltered{"Delete what is filtered", "Löschen, was gefiltert ist"};
inline constexpr Phrase removeFilteredHint{
    "%1 will be gone for good. Type %2 to confirm.",
    "%1 sind danach endgültig weg. Zur Bestätigung %2 eingeben."};
inline constexpr Phrase removeAll{"Delete everything", "Alles löschen"};
inline constexpr Phrase removeAllHint{
    "All tests, notes and links are gone for good, and later reports of your device are "
    "refused. Type your number %1 to confirm.",
    "Alle Tests, Notizen und Links sind danach endgültig weg, und spätere Berichte "
    "Ihres Geräts werden abgelehnt. Zur Bestätigung Ihre Nummer %1 eingeben."};
inline constexpr Phrase confirmation{"Confirmation", "Bestätigung"};
inline constexpr Phrase sharedTitle{"Shared measurements", "Geteilte Messungen"};
inline constexpr Phrase sharedTest{"Shared test", "Geteilter Test"};
inline constexpr Phrase sharedHint{
    "Somebody shared this view with you. It can be read, not changed.",
    "Jemand hat diese Ansicht mit Ihnen geteilt. Sie lässt sich lesen, nicht ändern."};

// One test.
inline constexpr Phrase testTitle{"Test %1 / %2", "Test %1 / %2"};
inline constexpr Phrase back{"Back to all tests", "Zurück zu allen Tests"};
inline constexpr Phrase rateCurve{"Rate of each tenth of a second", "Rate jeder Zehntelsekunde"};
inline constexpr Phrase roundTrips{"Round trips", "Paketlaufzeiten"};
inline constexpr Phrase phases{"Where and how it was measured", "Wo und wie gemessen wurde"};
inline constexpr Phrase phase{"Phase", "Phase"};
inline constexpr Phrase position{"Position", "Position"};
inline constexpr Phrase cell{"Cell", "Zelle"};
inline constexpr Phrase mode{"Network", "Netz"};
inline constexpr Phrase signal{"Signal", "Signal"};
inline constexpr Phrase gpsLock{"satellites", "Satelliten"};
inline constexpr Phrase bothViews{"Device and service", "Gerät und Dienst"};
inline constexpr Phrase figure{"Figure", "Wert"};
inline constexpr Phrase device{"Device", "Gerät"};
inline constexpr Phrase service{"Service", "Dienst"};
inline constexpr Phrase agrees{"both agree within %1 %", "beide stimmen auf %1 % überein"};
inline constexpr Phrase noStream{
    "The service has seen no stream of this test; its rates are not shown.",
    "Der Dienst hat keinen Datenstrom dieses Tests gesehen; seine Raten werden nicht "
    "gezeigt."};
inline constexpr Phrase details{"All figures", "Alle Werte"};
inline constexpr Phrase log{"Log", "Protokoll"};
inline constexpr Phrase average{"Average", "Mittel"};
inline constexpr Phrase least{"least", "kleinster"};
inline constexpr Phrase greatest{"greatest", "grösster"};
inline constexpr Phrase bytes{"Bytes", "Bytes"};
inline constexpr Phrase duration{"Duration", "Dauer"};
inline constexpr Phrase noteHint{
    "What should be remembered about this test? At most 500 characters.",
    "Was soll zu diesem Test in Erinnerung bleiben? Höchstens 500 Zeichen."};
inline constexpr Phrase save{"Save", "Speichern"};
inline constexpr Phrase removeTest{"Delete this test", "Diesen Test löschen"};
inline constexpr Phrase removeTestHint{"It will be gone for good. Type %1 to confirm.",
                                       "Er ist danach endgültig weg. Zur Bestätigung %1 eingeben."};

// Delay under load.
inline constexpr Phrase underLoad{"The line under load", "Die Leitung unter Last"};
inline constexpr Phrase underLoadCaption{
    "Round trips of the idle line and beside what ran over it; what the load adds is the "
    "difference of the medians.",
    "Paketlaufzeiten der ruhigen Leitung und neben dem, was darüber lief; was die Last "
    "dazutut, ist der Unterschied der Mediane."};
inline constexpr Phrase gamesDownload{"Games suffer while something downloads: %1",
                                      "Spiele leiden, während etwas heruntergeladen wird: %1"};
inline constexpr Phrase callsDownload{
    "Calls and games suffer while something downloads: %1",
    "Anrufe und Spiele leiden, während etwas heruntergeladen wird: %1"};
inline constexpr Phrase failDownload{
    "Calls and games fail while something downloads: %1",
    "Anrufe und Spiele gehen nicht, während etwas heruntergeladen wird: %1"};
inline constexpr Phrase gamesUpload{"Games suffer while something uploads: %1",
                                    "Spiele leiden, während etwas hochgeladen wird: %1"};
inline constexpr Phrase callsUpload{"Calls and games suffer while something uploads: %1",
                                    "Anrufe und Spiele leiden, während etwas hochgeladen wird: %1"};
inline constexpr Phrase failUpload{
    "Calls and games fail while something uploads: %1",
    "Anrufe und Spiele gehen nicht, während etwas hochgeladen wird: %1"};
inline constexpr Phrase nothingSuffers{"Calls and games do not suffer from downloads and uploads.",
                                       "Anrufe und Spiele leiden nicht unter Down- und Uploads."};
inline constexpr Phrase load{"Load", "Last"};
inline constexpr Phrase idleLine{"None", "Keine"};
inline constexpr Phrase madeDownload{"Download made for it", "Eigens erzeugter Download"};
inline constexpr Phrase madeUpload{"Upload made for it", "Eigens erzeugter Upload"};
inline constexpr Phrase within95{"95 % within", "95 % innert"};
inline constexpr Phrase adds{"Adds", "Zusätzlich"};
inline constexpr Phrase lost{"Lost", "Verloren"};
inline constexpr Phrase congestion{"Congestion control", "Staukontrolle"};
inline constexpr Phrase jitterOf{"Jitter of the idle line: %1", "Jitter der ruhigen Leitung: %1"};
inline constexpr Phrase steadyRate{"Steady rate", "Stetige Rate"};
inline constexpr Phrase kernelTitle{"What the service's kernel saw",
                                    "Was der Kern des Dienstes sah"};
inline constexpr Phrase kernelMedian{"Round trip, median", "Paketlaufzeit, Median"};
inline constexpr Phrase kernel95{"Round trip, 95 % within", "Paketlaufzeit, 95 % innert"};
inline constexpr Phrase kernelLeast{"Round trip, least", "Paketlaufzeit, kleinste"};
inline constexpr Phrase sentAgain{"Sent again", "Nochmals gesendet"};
inline constexpr Phrase heldBack{"Held back by", "Gebremst durch"};
inline constexpr Phrase byWindow{"the path %1 %", "den Weg %1 %"};
inline constexpr Phrase byReceiver{"the receiver %1 %", "den Empfänger %1 %"};
inline constexpr Phrase byBuffer{"the buffer %1 %", "den Puffer %1 %"};
inline constexpr Phrase byProgram{"the program %1 %", "das Programm %1 %"};

// Comparing.
inline constexpr Phrase compareTitle{"Compare measurements", "Messungen vergleichen"};
inline constexpr Phrase compareHint{
    "Two periods, servers or connections side by side: choose what goes to the left and "
    "what to the right.",
    "Zwei Zeiträume, Server oder Verbindungen nebeneinander: Wählen Sie, was links und "
    "was rechts steht."};
inline constexpr Phrase left{"Left", "Links"};
inline constexpr Phrase right{"Right", "Rechts"};
inline constexpr Phrase difference{"Difference", "Unterschied"};
inline constexpr Phrase compareCaption{"Figures of both sides", "Werte beider Seiten"};

inline constexpr Phrase presetMonths{"Last 30 days – those before", "Letzte 30 Tage – die davor"};
inline constexpr Phrase better{"better", "besser"};
inline constexpr Phrase worse{"worse", "schlechter"};

// The service itself.
inline constexpr Phrase homeTitle{"How fast is your connection, really?",
                                  "Wie schnell ist Ihre Verbindung wirklich?"};
inline constexpr Phrase homeText{
    "Velometer measures a mobile data connection where you stand: download, upload and round "
    "trip, with place, cell and network. This is the service at its other end.",
    "Velometer misst eine mobile Datenverbindung, wo Sie gerade stehen: Download, Upload "
    "und Paketlaufzeit, mit Ort, Zelle und Netz. Dies ist der Dienst am anderen Ende."};
inline constexpr Phrase homeClient{"Where the client is found", "Wo es das Programm gibt"};
inline constexpr Phrase homeClientText{
    "Install the packages velometer (with a window) or velometer-cli (for a terminal) "
    "of your system's software source, or build them from the project's sources. "
    "Then start a test; \"Links\" in the program leads to your own page here.",
    "Installieren Sie die Pakete velometer (mit Fenster) oder velometer-cli (fürs "
    "Terminal) aus der Softwarequelle Ihres Systems, oder bauen Sie sie aus den "
    "Quellen des Projekts. Starten Sie dann einen Test; «Links» im Programm führt "
    "zu Ihrer eigenen Seite hier."};
inline constexpr Phrase homeFigures{"Public figures", "Öffentliche Werte"};
inline constexpr Phrase homeFiguresText{
    "What all tests together say about networks, without anybody's traces:",
    "Was alle Tests zusammen über die Netze sagen, ohne irgendjemandes Spuren:"};
inline constexpr Phrase serverState{"State of the servers", "Zustand der Server"};
inline constexpr Phrase serverStateCaption{"Measurement servers and whether they take tests now",
                                           "Messserver und ob sie gerade Tests annehmen"};
inline constexpr Phrase state{"State", "Zustand"};
inline constexpr Phrase stateGood{"● takes tests", "● nimmt Tests an"};
inline constexpr Phrase stateFull{"▲ all places taken", "▲ alle Plätze belegt"};
inline constexpr Phrase stateBad{"✕ stores nothing now", "✕ speichert gerade nichts"};
inline constexpr Phrase stateSilent{"○ does not answer", "○ antwortet nicht"};
inline constexpr Phrase thisServer{"This server", "Dieser Server"};
inline constexpr Phrase running{"Streams now", "Ströme jetzt"};

// Public figures.
inline constexpr Phrase statisticsTitle{"Public statistics", "Öffentliche Statistik"};
inline constexpr Phrase statisticsHint{
    "Figures of tests that this service has confirmed. Never fewer than 10 tests of at "
    "least 3 users stand behind a figure, and none leads to anybody.",
    "Werte von Tests, die dieser Dienst bestätigt hat. Hinter jedem stehen mindestens "
    "10 Tests von mindestens 3 Personen, und keiner führt zu jemandem."};
inline constexpr Phrase byMonth{"By month", "Nach Monat"};
inline constexpr Phrase byOperator{"By operator", "Nach Betreiber"};
inline constexpr Phrase byServer{"By server", "Nach Server"};
inline constexpr Phrase mediansCaption{
    "Medians, in brackets what 10 % and 90 % stay below; RTT under load where BBR made it",
    "Mediane, in Klammern was 10 % und 90 % nicht überschreiten; RTT unter Last, wo BBR sie "
    "machte"};
inline constexpr Phrase statisticsLicence{"Licence: %1.", "Lizenz: %1."};
inline constexpr Phrase statisticsNone{"There are not enough tests for a figure yet.",
                                       "Noch gibt es für keinen Wert genug Tests."};

} // namespace velometer::Texts
