<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_CH" sourcelanguage="en">
<context>
    <name>CommandLine</name>
    <message>
        <source>show needs the ID of a test, as results lists it.</source>
        <translation>show braucht die ID eines Tests, wie results sie zeigt.</translation>
    </message>
    <message>
        <source>--interval needs --count with at least 2 tests.</source>
        <translation>--interval braucht --count mit mindestens 2 Tests.</translation>
    </message>
    <message>
        <source>export needs --format with %1.</source>
        <translation>export braucht --format mit %1.</translation>
    </message>
    <message>
        <source>--resume goes on with what the series began with; leave out --count, --interval and --location.</source>
        <translation>--resume setzt die Serie fort, wie sie begann; --count, --interval und --location weglassen.</translation>
    </message>
    <message>
        <source>velometer-cli measures download, upload and round-trip time of this connection.</source>
        <translation>velometer-cli misst Download, Upload und Antwortzeit dieser Verbindung.</translation>
    </message>
    <message>
        <source>run a test, or a series of them</source>
        <translation>einen Test durchführen, oder eine Serie davon</translation>
    </message>
    <message>
        <source>list the stored tests</source>
        <translation>die gespeicherten Tests auflisten</translation>
    </message>
    <message>
        <source>Lists the stored tests, the newest first.</source>
        <translation>Listet die gespeicherten Tests auf, den neuesten zuerst.</translation>
    </message>
    <message>
        <source>one stored test</source>
        <translation>ein gespeicherter Test</translation>
    </message>
    <message>
        <source>One stored test: ID as results lists it, or SERIES/TEST.</source>
        <translation>Ein gespeicherter Test: ID wie in results, oder SERIE/TEST.</translation>
    </message>
    <message>
        <source>all stored tests for other programs</source>
        <translation>alle gespeicherten Tests für andere Programme</translation>
    </message>
    <message>
        <source>All stored tests, the newest first: a table, a JSON object a line, a GeoJSON
collection, or a GPX waypoint for each test whose position is known.</source>
        <translation>Alle gespeicherten Tests, der neueste zuerst: eine Tabelle, ein JSON-Objekt je
Zeile, eine GeoJSON-Sammlung oder ein GPX-Wegpunkt für jeden Test, dessen
Position bekannt ist.</translation>
    </message>
    <message>
        <source>the servers to test against</source>
        <translation>die Server, gegen die getestet wird</translation>
    </message>
    <message>
        <source>The servers to test against; a star marks the one used last.</source>
        <translation>Die Server, gegen die getestet wird; ein Stern steht beim zuletzt verwendeten.</translation>
    </message>
    <message>
        <source>what the device tells about itself right now</source>
        <translation>was das Gerät gerade über sich verrät</translation>
    </message>
    <message>
        <source>What the device tells about network, position and itself, and what it does not.
With --watch again after every change, until interrupted.</source>
        <translation>Was das Gerät über Netz, Position und sich selbst verrät, und was nicht.
Mit --watch nach jeder Änderung wieder, bis zum Abbruch.</translation>
    </message>
    <message>
        <source>deliver the reports that wait</source>
        <translation>die wartenden Berichte abliefern</translation>
    </message>
    <message>
        <source>Offers the waiting reports to the service once. Exit status 0: none waits any
more, 1: the service did not take them all, 5: it cannot be reached.</source>
        <translation>Bietet die wartenden Berichte dem Dienst einmal an. Exit-Status 0: keiner wartet
mehr, 1: der Dienst nahm nicht alle, 5: er ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>start a new series of tests</source>
        <translation>eine neue Testserie beginnen</translation>
    </message>
    <message>
        <source>The tests from now on belong to a new series and are counted from 1.</source>
        <translation>Die Tests von jetzt an gehören zu einer neuen Serie und zählen ab 1.</translation>
    </message>
    <message>
        <source>delete all stored tests and waiting reports</source>
        <translation>alle gespeicherten Tests und wartenden Berichte löschen</translation>
    </message>
    <message>
        <source>Deletes all stored tests and all waiting reports. Without --yes it only says
what it would delete.</source>
        <translation>Löscht alle gespeicherten Tests und alle wartenden Berichte. Ohne --yes sagt es
nur, was es löschen würde.</translation>
    </message>
    <message>
        <source>a server of the list, or any other (port 80)</source>
        <translation>ein Server der Liste oder ein anderer (Port 80)</translation>
    </message>
    <message>
        <source>where you are; goes into the report</source>
        <translation>wo Sie sind; steht im Bericht</translation>
    </message>
    <message>
        <source>so many tests (1 to 100000)</source>
        <translation>so viele Tests (1 bis 100000)</translation>
    </message>
    <message>
        <source>download and upload of a test end when they have moved N bytes together (from 100000; 500k, 10M, 2G), 0 for no limit; else what the settings page says</source>
        <translation>Download und Upload eines Tests enden, wenn sie zusammen N Bytes übertragen haben (ab 100000; 500k, 10M, 2G), 0 für keine Grenze; sonst, was die Einstellungen sagen</translation>
    </message>
    <message>
        <source>a number of bytes from %1 on, also such as 500k, 10M or 2G, or 0 for no limit</source>
        <translation>eine Zahl von Bytes ab %1, auch wie 500k, 10M oder 2G, oder 0 für keine Grenze</translation>
    </message>
    <message>
        <source>test even when it may be expensive</source>
        <translation>auch testen, wenn es teuer werden kann</translation>
    </message>
    <message>
        <source>only IPv4</source>
        <translation>nur IPv4</translation>
    </message>
    <message>
        <source>only IPv6</source>
        <translation>nur IPv6</translation>
    </message>
    <message>
        <source>text, json or csv; of export csv, json, geojson or gpx</source>
        <translation>text, json oder csv; bei export csv, json, geojson oder gpx</translation>
    </message>
    <message>
        <source>the same as --format json</source>
        <translation>dasselbe wie --format json</translation>
    </message>
    <message>
        <source>the same as --format csv</source>
        <translation>dasselbe wie --format csv</translation>
    </message>
    <message>
        <source>events as they happen, one JSON object a line</source>
        <translation>Ereignisse, wie sie geschehen, ein JSON-Objekt je Zeile</translation>
    </message>
    <message>
        <source>to standard error; auto: on a terminal</source>
        <translation>auf die Standardfehlerausgabe; auto: an einem Terminal</translation>
    </message>
    <message>
        <source>at most so many tests</source>
        <translation>höchstens so viele Tests</translation>
    </message>
    <message>
        <source>really delete</source>
        <translation>wirklich löschen</translation>
    </message>
    <message>
        <source>ask the device, replay a recorded one, or do without modem and position</source>
        <translation>das Gerät fragen, ein aufgezeichnetes abspielen oder ohne Modem und Position auskommen</translation>
    </message>
    <message>
        <source>positions from a receiver, or from a recording at its pace, whatever the platform</source>
        <translation>Positionen von einem Empfänger oder aus einer Aufzeichnung in deren Tempo, auf jeder Plattform</translation>
    </message>
    <message>
        <source>print again whenever something changes</source>
        <translation>bei jeder Änderung wieder ausgeben</translation>
    </message>
    <message>
        <source>where the service lives (else VELOMETER_CONFIG, else velometer/deployment.conf)</source>
        <translation>wo der Dienst ist (sonst VELOMETER_CONFIG, sonst velometer/deployment.conf)</translation>
    </message>
    <message>
        <source>keep the results there</source>
        <translation>die Ergebnisse dort aufbewahren</translation>
    </message>
    <message>
        <source>the diagnostic log, to standard error</source>
        <translation>das Diagnoseprotokoll, auf die Standardfehlerausgabe</translation>
    </message>
    <message>
        <source>Exit status: 0 done, 1 the service refused or broke the test, 2 wrong usage,
3 the store cannot be opened or written, 4 roaming or over the data budget,
5 no network or no server, 129 hung up, 130 interrupted, 143 terminated.</source>
        <translation>Exit-Status: 0 fertig, 1 der Dienst lehnte ab oder brach den Test, 2 falscher
Aufruf, 3 die Datenbank lässt sich nicht öffnen oder schreiben, 4 Roaming oder
über der Datengrenze, 5 kein Netz oder kein Server, 129 aufgelegt,
130 unterbrochen, 143 beendet.</translation>
    </message>
    <message>
        <source>an ID such as 17, or SERIES/TEST such as 3/12</source>
        <translation>eine ID wie 17 oder SERIE/TEST wie 3/12</translation>
    </message>
    <message>
        <source>--format of %1</source>
        <translation>--format von %1</translation>
    </message>
    <message>
        <source>wait before the first test for a first position (0 to 600); else 5 where something may tell one</source>
        <translation>vor dem ersten Test auf eine erste Position warten (0 bis 600); sonst 5, wo etwas eine melden kann</translation>
    </message>
    <message>
        <source>where the service shows your tests</source>
        <translation>wo der Dienst Ihre Tests zeigt</translation>
    </message>
    <message>
        <source>The address of the page on which the service shows your tests and, on a
terminal, the same as a QR code for a phone&apos;s camera. Whoever has the address
sees the tests.</source>
        <translation>Die Adresse der Seite, auf der der Dienst Ihre Tests zeigt, und auf einem
Terminal dasselbe als QR-Code für die Kamera eines Telefons. Wer die Adresse
hat, sieht die Tests.</translation>
    </message>
    <message>
        <source>open it in the browser as well</source>
        <translation>sie auch im Browser öffnen</translation>
    </message>
    <message>
        <source>times the round trip of the idle line N times (3 to 200), for median, 95th percentile and jitter; its figures stay those of the first 3</source>
        <translation>misst die Antwortzeit der ruhenden Leitung N-mal (3 bis 200), für Median, 95. Perzentil und Schwankung; ihre Werte bleiben die der ersten 3</translation>
    </message>
    <message>
        <source>after the usual figures load the line for 5 s each way with CUBIC, which fills queues, and tell the delay meanwhile</source>
        <translation>belastet die Leitung nach den üblichen Werten 5 s je Richtung mit CUBIC, das Warteschlangen füllt, und nennt die Verzögerung dabei</translation>
    </message>
    <message>
        <source>of the streams of both ends, where their kernels have it; else BBR, where they have that</source>
        <translation>der Ströme beider Seiten, wo ihre Kernel sie haben; sonst BBR, wo sie das haben</translation>
    </message>
    <message>
        <source>of tests from start to start (0 to 604800), of a track from point to point (1 to 3600, or in metres, such as 10m)</source>
        <translation>bei Tests von Start zu Start (0 bis 604800), bei einem Track von Punkt zu Punkt (1 bis 3600, oder in Metern wie 10m)</translation>
    </message>
    <message>
        <source>go on with a series, or a track, that was interrupted</source>
        <translation>eine unterbrochene Serie oder einen unterbrochenen Track fortsetzen</translation>
    </message>
    <message>
        <source>record where you are and what your network is there</source>
        <translation>aufzeichnen, wo Sie sind und wie Ihr Netz dort ist</translation>
    </message>
    <message>
        <source>Records position, network, cell and signal on the way, without any traffic,
until interrupted; Ctrl+Z and fg pause it. What is stored after a crash goes on
with --resume. With --json or --csv every point is also printed.</source>
        <translation>Zeichnet unterwegs Position, Netz, Zelle und Signal auf, ohne jeden Datenverkehr,
bis zum Abbruch; Strg+Z und fg machen eine Pause. Nach einem Absturz geht es mit
--resume weiter. Mit --json oder --csv wird jeder Punkt auch ausgegeben.</translation>
    </message>
    <message>
        <source>list the recorded tracks</source>
        <translation>die aufgezeichneten Tracks auflisten</translation>
    </message>
    <message>
        <source>Lists the recorded tracks, the newest first; export --track ID writes one.</source>
        <translation>Listet die aufgezeichneten Tracks auf, den neuesten zuerst; export --track ID gibt einen aus.</translation>
    </message>
    <message>
        <source>delete a recorded track</source>
        <translation>einen aufgezeichneten Track löschen</translation>
    </message>
    <message>
        <source>Deletes the track ID, as tracks lists it, from this device. Without --yes it only
says what it would delete.</source>
        <translation>Löscht den Track ID, wie tracks ihn auflistet, von diesem Gerät. Ohne --yes sagt
es nur, was es löschen würde.</translation>
    </message>
    <message>
        <source>delete-track needs the ID of a track, as tracks lists it.</source>
        <translation>delete-track braucht die ID eines Tracks, wie tracks sie auflistet.</translation>
    </message>
    <message>
        <source>run a test on the way, from start to start: 300, or 500m</source>
        <translation>unterwegs einen Test machen, von Start zu Start: 300 oder 500m</translation>
    </message>
    <message>
        <source>seconds such as 300 or metres such as 500m</source>
        <translation>Sekunden wie 300 oder Meter wie 500m</translation>
    </message>
    <message>
        <source>end after so long (1 to 604800)</source>
        <translation>nach dieser Zeit aufhören (1 bis 604800)</translation>
    </message>
    <message>
        <source>seconds from 1 to %1</source>
        <translation>Sekunden von 1 bis %1</translation>
    </message>
    <message>
        <source>this track in place of the tests</source>
        <translation>diesen Track anstelle der Tests</translation>
    </message>
    <message>
        <source>seconds from 1 to %1, or metres such as 10m</source>
        <translation>Sekunden von 1 bis %1 oder Meter wie 10m</translation>
    </message>
    <message>
        <source>the ID of a track, as tracks lists it</source>
        <translation>die ID eines Tracks, wie tracks sie auflistet</translation>
    </message>
    <message>
        <source>the track stays on this device; else the service shows it on your page</source>
        <translation>der Track bleibt auf diesem Gerät; sonst zeigt ihn der Dienst auf Ihrer Seite</translation>
    </message>
    <message>
        <source>first bring those to the service that it does not have</source>
        <translation>zuerst jene zum Dienst bringen, die er noch nicht hat</translation>
    </message>
</context>
<context>
    <name>DataBudget</name>
    <message>
        <source>download</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>upload</source>
        <translation>Upload</translation>
    </message>
    <message>
        <source>ended early: %1</source>
        <translation>vorzeitig beendet: %1</translation>
    </message>
    <message>
        <source>at most %1; %2</source>
        <translation>höchstens %1; %2</translation>
    </message>
</context>
<context>
    <name>DelayLine</name>
    <message>
        <source>RTT 0 to %1 ms</source>
        <translation>RTT 0 bis %1 ms</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>Upload</translation>
    </message>
    <message>
        <source>%1 %2 ms</source>
        <translation>%1 %2 ms</translation>
    </message>
    <message>
        <source>RTT under load: %1</source>
        <translation>RTT unter Last: %1</translation>
    </message>
</context>
<context>
    <name>LoadWords</name>
    <message>
        <source>Games suffer while something downloads: %1</source>
        <translation>Spiele leiden, während etwas heruntergeladen wird: %1</translation>
    </message>
    <message>
        <source>Calls and games suffer while something downloads: %1</source>
        <translation>Anrufe und Spiele leiden, während etwas heruntergeladen wird: %1</translation>
    </message>
    <message>
        <source>Calls and games fail while something downloads: %1</source>
        <translation>Anrufe und Spiele gehen nicht, während etwas heruntergeladen wird: %1</translation>
    </message>
    <message>
        <source>Games suffer while something uploads: %1</source>
        <translation>Spiele leiden, während etwas hochgeladen wird: %1</translation>
    </message>
    <message>
        <source>Calls and games suffer while something uploads: %1</source>
        <translation>Anrufe und Spiele leiden, während etwas hochgeladen wird: %1</translation>
    </message>
    <message>
        <source>Calls and games fail while something uploads: %1</source>
        <translation>Anrufe und Spiele gehen nicht, während etwas hochgeladen wird: %1</translation>
    </message>
    <message>
        <source>Calls and games do not suffer from downloads and uploads.</source>
        <translation>Anrufe und Spiele leiden nicht unter Down- und Uploads.</translation>
    </message>
    <message>
        <source>%1 (95 % within %2)</source>
        <translation>%1 (95 % innert %2)</translation>
    </message>
    <message>
        <source>lost: %1 %</source>
        <translation>verloren: %1 %</translation>
    </message>
    <message>
        <source>at least %1</source>
        <translation>mindestens %1</translation>
    </message>
    <message>
        <source>jitter %1</source>
        <translation>Jitter %1</translation>
    </message>
</context>
<context>
    <name>MapGround</name>
    <message>
        <source>(c) OpenStreetMap contributors</source>
        <translation>© OpenStreetMap-Mitwirkende</translation>
    </message>
    <message>
        <source>Offline: outline only</source>
        <translation>Offline: nur Umrisse</translation>
    </message>
</context>
<context>
    <name>Options</name>
    <message>
        <source>There is no display; velometer-cli measures without one.</source>
        <translation>Es gibt keinen Bildschirm; velometer-cli misst ohne.</translation>
    </message>
    <message>
        <source>velometer measures a mobile data connection: download, upload and round-trip time.</source>
        <translation>velometer misst eine mobile Datenverbindung: Download, Upload und Antwortzeit.</translation>
    </message>
    <message>
        <source>deployment file: where the service and the test servers are</source>
        <translation>Betriebsdatei: wo der Dienst und die Testserver sind</translation>
    </message>
    <message>
        <source>where results are kept</source>
        <translation>wo die Ergebnisse liegen</translation>
    </message>
    <message>
        <source>asks the device, replays a recorded one, or does without modem and position</source>
        <translation>fragt das Gerät, spielt ein aufgezeichnetes ab oder kommt ohne Modem und Position aus</translation>
    </message>
    <message>
        <source>positions from a receiver or a recording of one</source>
        <translation>Positionen von einem Empfänger oder einer Aufzeichnung</translation>
    </message>
    <message>
        <source>handset (turned, full screen), phone (full screen) or desktop (a window); without it what fits the screen</source>
        <translation>handset (gedreht, ganzer Bildschirm), phone (ganzer Bildschirm) oder desktop (ein Fenster); sonst, was zum Bildschirm passt</translation>
    </message>
    <message>
        <source>handset, phone or desktop</source>
        <translation>handset, phone oder desktop</translation>
    </message>
    <message>
        <source>German or English; without it as chosen on the settings page</source>
        <translation>Deutsch oder Englisch; sonst wie in den Einstellungen gewählt</translation>
    </message>
    <message>
        <source>writes the diagnostic log to standard error</source>
        <translation>schreibt das Diagnoseprotokoll auf die Standardfehlerausgabe</translation>
    </message>
    <message>
        <source>velometer-cli does the same without a display.</source>
        <translation>velometer-cli leistet dasselbe ohne Bildschirm.</translation>
    </message>
    <message>
        <source>how it looks; without it as chosen on the settings page</source>
        <translation>wie es aussieht; ohne sie wie auf der Seite Einstellungen gewählt</translation>
    </message>
    <message>
        <source>auto, dark, light or given</source>
        <translation>auto, dark, light oder given</translation>
    </message>
</context>
<context>
    <name>PlatformChoice</name>
    <message>
        <source>--platform takes system, scripted:FILE or none, not %1.</source>
        <translation>--platform nimmt system, scripted:DATEI oder none, nicht %1.</translation>
    </message>
</context>
<context>
    <name>PositionChoice</name>
    <message>
        <source>--position takes nmea:FILE, nmea:socket://HOST:PORT, gpsd or gpsd://HOST:PORT, not %1.</source>
        <translation>--position nimmt nmea:DATEI, nmea:socket://HOST:PORT, gpsd oder gpsd://HOST:PORT, nicht %1.</translation>
    </message>
</context>
<context>
    <name>RateClasses</name>
    <message>
        <source>below 1 Mbit/s</source>
        <translation>unter 1 Mbit/s</translation>
    </message>
    <message>
        <source>1 to 5</source>
        <translation>1 bis 5</translation>
    </message>
    <message>
        <source>5 to 20</source>
        <translation>5 bis 20</translation>
    </message>
    <message>
        <source>20 to 100</source>
        <translation>20 bis 100</translation>
    </message>
    <message>
        <source>100 and more</source>
        <translation>100 und mehr</translation>
    </message>
    <message>
        <source>na</source>
        <translation>k. A.</translation>
    </message>
</context>
<context>
    <name>Syntax</name>
    <message>
        <source>%1 or %2</source>
        <translation>%1 oder %2</translation>
    </message>
    <message>
        <source>%1 takes no value.</source>
        <translation>%1 nimmt keinen Wert.</translation>
    </message>
    <message>
        <source>%1 is no option of %2.</source>
        <translation>%1 ist keine Option von %2.</translation>
    </message>
    <message>
        <source>There is no option %1; --help lists them.</source>
        <translation>Es gibt keine Option %1; --help zählt sie auf.</translation>
    </message>
    <message>
        <source>%1 does not know what to do with %2.</source>
        <translation>%1 kann mit %2 nichts anfangen.</translation>
    </message>
    <message>
        <source>There is no command %1; use %2.</source>
        <translation>Es gibt keinen Befehl %1; möglich sind %2.</translation>
    </message>
    <message>
        <source>%1 needs a value.</source>
        <translation>%1 braucht einen Wert.</translation>
    </message>
    <message>
        <source>COMMAND --help tells more about each.</source>
        <translation>BEFEHL --help sagt mehr zu jedem.</translation>
    </message>
    <message>
        <source>Everywhere:</source>
        <translation>Überall:</translation>
    </message>
    <message>
        <source>Examples:</source>
        <translation>Beispiele:</translation>
    </message>
    <message>
        <source>the version; this page</source>
        <translation>die Version; diese Seite</translation>
    </message>
    <message>
        <source>what a shell may complete, as a table</source>
        <translation>was eine Shell ergänzen kann, als Tabelle</translation>
    </message>
</context>
<context>
    <name>Takes</name>
    <message>
        <source>%1 takes %2, not %3.</source>
        <translation>%1 nimmt %2, nicht %3.</translation>
    </message>
    <message>
        <source>%1 and %2 contradict each other.</source>
        <translation>%1 und %2 widersprechen sich.</translation>
    </message>
    <message>
        <source>a whole number from %1 to %2</source>
        <translation>eine ganze Zahl von %1 bis %2</translation>
    </message>
</context>
<context>
    <name>TextFormat</name>
    <message>
        <source>signal %1 %</source>
        <translation>Signal %1 %</translation>
    </message>
    <message>
        <source>cell %1</source>
        <translation>Zelle %1</translation>
    </message>
    <message>
        <source>roaming</source>
        <translation>Roaming</translation>
    </message>
    <message>
        <source>within %1 m</source>
        <translation>auf %1 m</translation>
    </message>
    <message>
        <source>altitude %1 m</source>
        <translation>Höhe %1 m</translation>
    </message>
    <message>
        <source>%1 km/h</source>
        <translation>%1 km/h</translation>
    </message>
    <message>
        <source>delivered</source>
        <translation>abgeliefert</translation>
    </message>
    <message>
        <source>waits in the queue</source>
        <translation>wartet</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keiner</translation>
    </message>
    <message>
        <source>earlier ones delivered: %1</source>
        <translation>frühere abgeliefert: %1</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>not measured</source>
        <translation>nicht gemessen</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>Upload</translation>
    </message>
    <message>
        <source>Round trip</source>
        <translation>Antwortzeit</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>Netz</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>Bericht</translation>
    </message>
    <message>
        <source>All tests</source>
        <translation>Alle Tests</translation>
    </message>
    <message>
        <source>Test %1 of series %2, %3</source>
        <translation>Test %1 der Serie %2, %3</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Test</source>
        <translation>Test</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>Data budget</source>
        <translation>Datenlimit</translation>
    </message>
    <message>
        <source>steady %1</source>
        <translation>dauerhaft %1</translation>
    </message>
    <message>
        <source>Delay idle</source>
        <translation>Verzögerung ohne Last</translation>
    </message>
    <message>
        <source>Delay in download</source>
        <translation>Verzögerung im Download</translation>
    </message>
    <message>
        <source>Delay in upload</source>
        <translation>Verzögerung im Upload</translation>
    </message>
    <message>
        <source>Delay in extra download</source>
        <translation>Verzögerung im Zusatz-Download</translation>
    </message>
    <message>
        <source>Delay in extra upload</source>
        <translation>Verzögerung im Zusatz-Upload</translation>
    </message>
    <message>
        <source>Under load</source>
        <translation>Unter Last</translation>
    </message>
    <message>
        <source>band %1</source>
        <translation>Band %1</translation>
    </message>
</context>
<context>
    <name>TrackCommands</name>
    <message>
        <source>There is no track %1.</source>
        <translation>Es gibt keinen Track %1.</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Beginn</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>Dauer</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
    <message>
        <source>Points</source>
        <translation>Punkte</translation>
    </message>
    <message>
        <source>Tests</source>
        <translation>Tests</translation>
    </message>
</context>
<context>
    <name>velometer::AboutTab</name>
    <message>
        <source>About this program</source>
        <translation>Über dieses Programm</translation>
    </message>
    <message>
        <source>About</source>
        <translation>About</translation>
    </message>
</context>
<context>
    <name>velometer::AddressNotice</name>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>The browser should show this address now. If it does not, copy it:</source>
        <translation>Der Browser sollte diese Adresse jetzt zeigen. Falls nicht, kopieren Sie sie:</translation>
    </message>
    <message>
        <source>No browser could be opened. Copy this address into the browser of another device:</source>
        <translation>Es liess sich kein Browser öffnen. Kopieren Sie diese Adresse in den Browser eines anderen Geräts:</translation>
    </message>
    <message>
        <source>Your mail program should show a mail now. If it does not, write to this address:</source>
        <translation>Ihr Mailprogramm sollte jetzt eine Mail zeigen. Falls nicht, schreiben Sie an diese Adresse:</translation>
    </message>
    <message>
        <source>No mail program could be opened. Write to this address:</source>
        <translation>Es liess sich kein Mailprogramm öffnen. Schreiben Sie an diese Adresse:</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Kopiert</translation>
    </message>
</context>
<context>
    <name>velometer::ChipBar</name>
    <message>
        <source>filtered by this</source>
        <translation>danach gefiltert</translation>
    </message>
</context>
<context>
    <name>velometer::ChoicePopup</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>current</source>
        <translation>gewählt</translation>
    </message>
</context>
<context>
    <name>velometer::DetailsWindow</name>
    <message>
        <source>Please Wait ...</source>
        <translation>Bitte warten ...</translation>
    </message>
    <message>
        <source>Resultat als E-Mail versenden</source>
        <translation>Resultat als E-Mail versenden</translation>
    </message>
    <message>
        <source>Performance Data</source>
        <translation>Leistungsdaten</translation>
    </message>
    <message>
        <source>Download Average</source>
        <translation>Download-Durchschnitt</translation>
    </message>
    <message>
        <source>over 5 seconds</source>
        <translation>über 5 Sekunden</translation>
    </message>
    <message>
        <source>Download Maximum</source>
        <translation>Download-Maximum</translation>
    </message>
    <message>
        <source>fastest second</source>
        <translation>schnellste Sekunde</translation>
    </message>
    <message>
        <source>Upload Average</source>
        <translation>Upload-Durchschnitt</translation>
    </message>
    <message>
        <source>Upload Maximum</source>
        <translation>Upload-Maximum</translation>
    </message>
    <message>
        <source>RTT Average</source>
        <translation>RTT-Durchschnitt</translation>
    </message>
    <message>
        <source>over 3 &quot;TCP Connect Time&quot;</source>
        <translation>über 3 «TCP Connect Time»</translation>
    </message>
    <message>
        <source>RTT Minimum</source>
        <translation>RTT-Minimum</translation>
    </message>
    <message>
        <source>min &quot;TCP Connect Time&quot;</source>
        <translation>kleinste «TCP Connect Time»</translation>
    </message>
    <message>
        <source>Downloaded Bytes</source>
        <translation>Empfangene Bytes</translation>
    </message>
    <message>
        <source>whole test</source>
        <translation>ganzer Test</translation>
    </message>
    <message>
        <source>Uploaded Bytes</source>
        <translation>Gesendete Bytes</translation>
    </message>
    <message>
        <source>Total transferred Bytes</source>
        <translation>Bytes insgesamt</translation>
    </message>
    <message>
        <source>Device Information</source>
        <translation>Geräteinformationen</translation>
    </message>
    <message>
        <source>Connectiontype(s)</source>
        <translation>Verbindungsart(en)</translation>
    </message>
    <message>
        <source>during test cycle</source>
        <translation>während des Tests</translation>
    </message>
    <message>
        <source>NetworkCell</source>
        <translation>Funkzelle</translation>
    </message>
    <message>
        <source>at the end of the test</source>
        <translation>am Ende des Tests</translation>
    </message>
    <message>
        <source>GSM Signalstrength</source>
        <translation>GSM-Signalstärke</translation>
    </message>
    <message>
        <source>External IP</source>
        <translation>Externe IP</translation>
    </message>
    <message>
        <source>Device IP</source>
        <translation>IP des Geräts</translation>
    </message>
    <message>
        <source>Device Latitude</source>
        <translation>Breitengrad</translation>
    </message>
    <message>
        <source>Device Longitude</source>
        <translation>Längengrad</translation>
    </message>
    <message>
        <source>Device Altitude</source>
        <translation>Höhe</translation>
    </message>
    <message>
        <source>Distance Traveled</source>
        <translation>Zurückgelegte Strecke</translation>
    </message>
    <message>
        <source>during test, in meters</source>
        <translation>während des Tests, in Metern</translation>
    </message>
    <message>
        <source>Average Velocity</source>
        <translation>Durchschnittsgeschwindigkeit</translation>
    </message>
    <message>
        <source>Vert. Accuracy of GPS/Network</source>
        <translation>Vert. Genauigkeit GPS/Netz</translation>
    </message>
    <message>
        <source>Hor. Accuracy of GPS/Network</source>
        <translation>Hor. Genauigkeit GPS/Netz</translation>
    </message>
    <message>
        <source>Test Server Info</source>
        <translation>Testserver</translation>
    </message>
    <message>
        <source>Server Name</source>
        <translation>Servername</translation>
    </message>
    <message>
        <source>Server Domain</source>
        <translation>Server-Domain</translation>
    </message>
    <message>
        <source>Server IP</source>
        <translation>Server-IP</translation>
    </message>
    <message>
        <source>Server Port</source>
        <translation>Server-Port</translation>
    </message>
    <message>
        <source>Server Country</source>
        <translation>Land</translation>
    </message>
    <message>
        <source>Server State</source>
        <translation>Kanton/Staat</translation>
    </message>
    <message>
        <source>Server City</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Test Info</source>
        <translation>Test</translation>
    </message>
    <message>
        <source>Date of Test</source>
        <translation>Datum des Tests</translation>
    </message>
    <message>
        <source>Time of Test</source>
        <translation>Zeit des Tests</translation>
    </message>
    <message>
        <source>Test Series ID</source>
        <translation>Nummer der Testserie</translation>
    </message>
    <message>
        <source>Test ID</source>
        <translation>Nummer des Tests</translation>
    </message>
    <message>
        <source>Summary for the current measurement:</source>
        <translation>Zusammenfassung der Messung:</translation>
    </message>
    <message>
        <source>Link to the measurements:</source>
        <translation>Link zu den Messungen:</translation>
    </message>
    <message>
        <source>orvak Velometer for Zenta (UserId:%1 Version:%2)</source>
        <translation>orvak Velometer für Zenta (UserId:%1 Version:%2)</translation>
    </message>
    <message>
        <source>Data Budget</source>
        <translation>Datenlimit</translation>
    </message>
    <message>
        <source>Open on the service</source>
        <translation>Auf der Webseite öffnen</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Details</translation>
    </message>
    <message>
        <source>Back to the results</source>
        <translation>Zurück zu den Resultaten</translation>
    </message>
    <message>
        <source>Test above in the list</source>
        <translation>Test darüber in der Liste</translation>
    </message>
    <message>
        <source>Test below in the list</source>
        <translation>Test darunter in der Liste</translation>
    </message>
    <message>
        <source>Share</source>
        <translation>Teilen</translation>
    </message>
    <message>
        <source>Details of the test</source>
        <translation>Details des Tests</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Test %1</source>
        <translation>Test %1</translation>
    </message>
    <message>
        <source>This program has nothing in its log of the time of this test: it was started later.</source>
        <translation>Aus der Zeit dieses Tests hat das Protokoll dieses Programms nichts: Es wurde später gestartet.</translation>
    </message>
    <message>
        <source>from the end of its ramp-up on</source>
        <translation>vom Ende des Anlaufs an</translation>
    </message>
    <message>
        <source>median</source>
        <translation>Median</translation>
    </message>
    <message>
        <source>95 % are shorter</source>
        <translation>95 % sind kürzer</translation>
    </message>
    <message>
        <source>lost, percent</source>
        <translation>verloren, Prozent</translation>
    </message>
    <message>
        <source>congestion control of the load</source>
        <translation>Staukontrolle der Last</translation>
    </message>
    <message>
        <source>Delay and Steady Rate</source>
        <translation>Verzögerung und dauerhafte Rate</translation>
    </message>
    <message>
        <source>Download Steady Rate</source>
        <translation>Dauerhafte Download-Rate</translation>
    </message>
    <message>
        <source>Upload Steady Rate</source>
        <translation>Dauerhafte Upload-Rate</translation>
    </message>
    <message>
        <source>Idle Delay</source>
        <translation>Verzögerung ohne Last</translation>
    </message>
    <message>
        <source>Idle Jitter</source>
        <translation>Jitter ohne Last</translation>
    </message>
    <message>
        <source>Delay in Download</source>
        <translation>Verzögerung im Download</translation>
    </message>
    <message>
        <source>Delay in Upload</source>
        <translation>Verzögerung im Upload</translation>
    </message>
    <message>
        <source>Delay in Extra Download</source>
        <translation>Verzögerung im Zusatz-Download</translation>
    </message>
    <message>
        <source>Delay in Extra Upload</source>
        <translation>Verzögerung im Zusatz-Upload</translation>
    </message>
    <message>
        <source>RSRP</source>
        <translation>RSRP</translation>
    </message>
    <message>
        <source>RSRQ</source>
        <translation>RSRQ</translation>
    </message>
    <message>
        <source>SNR</source>
        <translation>SNR</translation>
    </message>
    <message>
        <source>Band</source>
        <translation>Band</translation>
    </message>
</context>
<context>
    <name>velometer::DeviceContext</name>
    <message>
        <source>Network mode</source>
        <translation>Netzmodus</translation>
    </message>
    <message>
        <source>Network status</source>
        <translation>Netzstatus</translation>
    </message>
    <message>
        <source>Network name</source>
        <translation>Netzname</translation>
    </message>
    <message>
        <source>Signal, %</source>
        <translation>Signal, %</translation>
    </message>
    <message>
        <source>WLAN signal, %</source>
        <translation>WLAN-Signal, %</translation>
    </message>
    <message>
        <source>Country code</source>
        <translation>Ländercode</translation>
    </message>
    <message>
        <source>Operator code</source>
        <translation>Betreibercode</translation>
    </message>
    <message>
        <source>Home country code</source>
        <translation>Ländercode daheim</translation>
    </message>
    <message>
        <source>Home operator code</source>
        <translation>Betreibercode daheim</translation>
    </message>
    <message>
        <source>Location area</source>
        <translation>Ortsbereich</translation>
    </message>
    <message>
        <source>Cell</source>
        <translation>Zelle</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Kind of position</source>
        <translation>Art der Position</translation>
    </message>
    <message>
        <source>Latitude</source>
        <translation>Breite</translation>
    </message>
    <message>
        <source>Longitude</source>
        <translation>Länge</translation>
    </message>
    <message>
        <source>Altitude, m</source>
        <translation>Höhe, m</translation>
    </message>
    <message>
        <source>Horizontal accuracy, m</source>
        <translation>Genauigkeit horizontal, m</translation>
    </message>
    <message>
        <source>Vertical accuracy, m</source>
        <translation>Genauigkeit vertikal, m</translation>
    </message>
    <message>
        <source>Speed, m/s</source>
        <translation>Geschwindigkeit, m/s</translation>
    </message>
    <message>
        <source>Direction, degrees</source>
        <translation>Richtung, Grad</translation>
    </message>
    <message>
        <source>Satellites in use</source>
        <translation>Satelliten benutzt</translation>
    </message>
    <message>
        <source>Satellites in view</source>
        <translation>Satelliten sichtbar</translation>
    </message>
    <message>
        <source>Manufacturer</source>
        <translation>Hersteller</translation>
    </message>
    <message>
        <source>Product</source>
        <translation>Produkt</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Modell</translation>
    </message>
    <message>
        <source>Platform</source>
        <translation>Plattform</translation>
    </message>
    <message>
        <source>Device id</source>
        <translation>Gerätenummer</translation>
    </message>
    <message>
        <source>Subscriber id</source>
        <translation>Teilnehmernummer</translation>
    </message>
    <message>
        <source>There is no source of satellites.</source>
        <translation>Es gibt keine Satellitenquelle.</translation>
    </message>
    <message>
        <source>RSRP, dBm</source>
        <translation>RSRP, dBm</translation>
    </message>
    <message>
        <source>RSRQ, dB</source>
        <translation>RSRQ, dB</translation>
    </message>
    <message>
        <source>SNR, dB</source>
        <translation>SNR, dB</translation>
    </message>
    <message>
        <source>WLAN name</source>
        <translation>WLAN-Name</translation>
    </message>
    <message>
        <source>Metered</source>
        <translation>Nach Verbrauch verrechnet</translation>
    </message>
    <message>
        <source>Connectivity</source>
        <translation>Erreichbarkeit</translation>
    </message>
    <message>
        <source>Position source</source>
        <translation>Positionsquelle</translation>
    </message>
    <message>
        <source>Modem service</source>
        <translation>Modemdienst</translation>
    </message>
    <message>
        <source>There is no source of positions: install a location service (GeoClue), or name a receiver with --position.</source>
        <translation>Es gibt keine Positionsquelle: Installieren Sie einen Ortungsdienst (GeoClue) oder nennen Sie mit --position einen Empfänger.</translation>
    </message>
    <message>
        <source>The system&apos;s location service (%1) refuses to tell the position: allow it to Velometer in the system&apos;s settings.</source>
        <translation>Der Ortungsdienst des Systems (%1) gibt die Position nicht preis: Erlauben Sie sie Velometer in den Einstellungen des Systems.</translation>
    </message>
    <message>
        <source>The source of positions (%1) cannot be reached: check that it is there, that it runs and that you may read it.</source>
        <translation>Die Positionsquelle (%1) ist nicht erreichbar: Prüfen Sie, ob es sie gibt, ob sie läuft und ob Sie sie lesen dürfen.</translation>
    </message>
    <message>
        <source>The source of positions (%1) knows none so far: a receiver needs a view of the sky and up to some minutes.</source>
        <translation>Die Positionsquelle (%1) kennt noch keine Position: Ein Empfänger braucht freie Sicht zum Himmel und bis zu einigen Minuten.</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>There is no system bus, as in a container: modem and connection are unknown.</source>
        <translation>Es gibt keinen System-Bus, etwa in einem Container: Modem und Verbindung sind unbekannt.</translation>
    </message>
    <message>
        <source>Neither ModemManager nor oFono is running: start one of them if this device has a modem.</source>
        <translation>Weder ModemManager noch oFono läuft: Starten Sie einen davon, wenn dieses Gerät ein Modem hat.</translation>
    </message>
    <message>
        <source>The modem service does not answer: restart it.</source>
        <translation>Der Modemdienst antwortet nicht: Starten Sie ihn neu.</translation>
    </message>
    <message>
        <source>The modem service knows of no modem: check that it is plugged in and switched on.</source>
        <translation>Der Modemdienst kennt kein Modem: Prüfen Sie, ob es eingesteckt und eingeschaltet ist.</translation>
    </message>
    <message>
        <source>NetworkManager is not running: whether the connection is metered is unknown.</source>
        <translation>NetworkManager läuft nicht: Ob die Verbindung nach Verbrauch verrechnet wird, ist unbekannt.</translation>
    </message>
    <message>
        <source>NetworkManager does not answer: restart it.</source>
        <translation>NetworkManager antwortet nicht: Starten Sie ihn neu.</translation>
    </message>
    <message>
        <source>NetworkManager has no active connection: connect the device, unless another program does.</source>
        <translation>NetworkManager hat keine aktive Verbindung: Verbinden Sie das Gerät, falls das nicht ein anderes Programm tut.</translation>
    </message>
</context>
<context>
    <name>velometer::FigureCards</name>
    <message>
        <source>Download</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>Upload</translation>
    </message>
    <message>
        <source>RTT</source>
        <translation>RTT</translation>
    </message>
</context>
<context>
    <name>velometer::FilterChoices</name>
    <message>
        <source>All connections</source>
        <translation>Alle Verbindungen</translation>
    </message>
    <message>
        <source>Mobile</source>
        <translation>Mobil</translation>
    </message>
    <message>
        <source>2G (GSM)</source>
        <translation>2G (GSM)</translation>
    </message>
    <message>
        <source>3G (UMTS)</source>
        <translation>3G (UMTS)</translation>
    </message>
    <message>
        <source>4G (LTE)</source>
        <translation>4G (LTE)</translation>
    </message>
    <message>
        <source>5G</source>
        <translation>5G</translation>
    </message>
    <message>
        <source>WLAN</source>
        <translation>WLAN</translation>
    </message>
    <message>
        <source>Other and mixed</source>
        <translation>Andere und gemischte</translation>
    </message>
    <message>
        <source>Connection</source>
        <translation>Verbindung</translation>
    </message>
    <message>
        <source>Period</source>
        <translation>Zeitraum</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>All places</source>
        <translation>Alle Orte</translation>
    </message>
    <message>
        <source>Test Server</source>
        <translation>Testserver</translation>
    </message>
    <message>
        <source>All servers</source>
        <translation>Alle Server</translation>
    </message>
    <message>
        <source>Sort</source>
        <translation>Sortieren</translation>
    </message>
    <message>
        <source>24 hours</source>
        <translation>24 Stunden</translation>
    </message>
    <message>
        <source>7 days</source>
        <translation>7 Tage</translation>
    </message>
    <message>
        <source>30 days</source>
        <translation>30 Tage</translation>
    </message>
    <message>
        <source>12 months</source>
        <translation>12 Monate</translation>
    </message>
    <message>
        <source>Any time</source>
        <translation>Jederzeit</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Fastest download</source>
        <translation>Schnellster Download</translation>
    </message>
    <message>
        <source>Fastest upload</source>
        <translation>Schnellster Upload</translation>
    </message>
    <message>
        <source>Shortest RTT</source>
        <translation>Kürzeste RTT</translation>
    </message>
    <message>
        <source>Newest first</source>
        <translation>Neueste zuerst</translation>
    </message>
</context>
<context>
    <name>velometer::GeoMapTab</name>
    <message>
        <source>No test has a position yet.</source>
        <translation>Noch kein Test hat eine Position.</translation>
    </message>
    <message>
        <source>Map of the tests</source>
        <translation>Karte der Tests</translation>
    </message>
    <message numerus="yes">
        <source>%n position(s) on the map</source>
        <translation>
            <numerusform>%n Position auf der Karte</numerusform>
            <numerusform>%n Positionen auf der Karte</numerusform>
        </translation>
    </message>
    <message>
        <source>ConnectionTyp:</source>
        <translation>Verbindungsart: </translation>
    </message>
    <message>
        <source>DownloadSpeed:</source>
        <translation>Download: </translation>
    </message>
    <message>
        <source>UploadSpeed:</source>
        <translation>Upload: </translation>
    </message>
    <message>
        <source>Plus and minus zoom, the arrow keys move the map. N or Page Down opens the label of the next older test, P or Page Up that of the next newer one, Escape closes it.</source>
        <translation>Plus und Minus vergrössern und verkleinern, die Pfeiltasten verschieben die Karte. N oder Bild ab öffnet die Angaben zum nächstälteren Test, P oder Bild auf zum nächstneueren, Escape schliesst sie.</translation>
    </message>
    <message>
        <source>na</source>
        <translation>k. A.</translation>
    </message>
    <message>
        <source>Map</source>
        <translation>Karte</translation>
    </message>
    <message>
        <source>other or mixed</source>
        <translation>andere oder gemischt</translation>
    </message>
    <message>
        <source>no track yet</source>
        <translation>noch kein Track</translation>
    </message>
    <message>
        <source>from %1 dBm</source>
        <translation>ab %1 dBm</translation>
    </message>
    <message>
        <source>below</source>
        <translation>darunter</translation>
    </message>
    <message>
        <source>signal not known</source>
        <translation>Signal nicht bekannt</translation>
    </message>
</context>
<context>
    <name>velometer::HistoryPlot</name>
    <message>
        <source>other connections</source>
        <translation>andere Verbindungen</translation>
    </message>
    <message>
        <source>%1 from %2 to %3 %4</source>
        <translation>%1 von %2 bis %3 %4</translation>
    </message>
</context>
<context>
    <name>velometer::HistoryTab</name>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Back to the results</source>
        <translation>Zurück zu den Resultaten</translation>
    </message>
    <message>
        <source>na</source>
        <translation>k. A.</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>Upload</translation>
    </message>
    <message>
        <source>RTT</source>
        <translation>RTT</translation>
    </message>
    <message>
        <source>No tests yet.</source>
        <translation>Noch keine Tests.</translation>
    </message>
    <message>
        <source>Start one on the test page.</source>
        <translation>Starten Sie einen auf der Testseite.</translation>
    </message>
    <message>
        <source>No test in this time.</source>
        <translation>Kein Test in dieser Zeit.</translation>
    </message>
    <message>
        <source>Choose a longer one, or all connections.</source>
        <translation>Wählen Sie eine längere oder alle Verbindungen.</translation>
    </message>
    <message numerus="yes">
        <source>Medians of %n test(s), and what a tenth is below and a tenth above</source>
        <translation>
            <numerusform>Median von %n Test, und was ein Zehntel unter- und ein Zehntel überschreitet</numerusform>
            <numerusform>Mediane von %n Tests, und was ein Zehntel unter- und ein Zehntel überschreitet</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>velometer::LastTest</name>
    <message>
        <source>The series has ended after %1 of %2 tests.</source>
        <translation>Die Serie ist nach %1 von %2 Tests zu Ende.</translation>
    </message>
    <message>
        <source>The test has ended.</source>
        <translation>Der Test ist zu Ende.</translation>
    </message>
</context>
<context>
    <name>velometer::LinksTab</name>
    <message>
        <source>Webseite mit Details zu 
meinen Resultaten öffnen</source>
        <translation>Webseite mit Details zu
meinen Resultaten öffnen</translation>
    </message>
    <message>
        <source>You get your own page with the first test.</source>
        <translation>Ihre eigene Seite erhalten Sie mit dem ersten Test.</translation>
    </message>
    <message>
        <source>Feedback an 
orvak verfassen</source>
        <translation>Feedback an
orvak verfassen</translation>
    </message>
    <message>
        <source>The page&apos;s address as a QR code</source>
        <translation>Die Adresse der Seite als QR-Code</translation>
    </message>
    <message>
        <source>Point another device&apos;s camera at it to see your results there. Whoever has the address sees them.</source>
        <translation>Mit der Kamera eines anderen Geräts sehen Sie Ihre Resultate dort. Wer die Adresse hat, sieht sie.</translation>
    </message>
    <message>
        <source>Links</source>
        <translation>Links</translation>
    </message>
</context>
<context>
    <name>velometer::LocationPopup</name>
    <message>
        <source>Your current Location:</source>
        <translation>Wo sind Sie?</translation>
    </message>
    <message>
        <source>Indoor</source>
        <translation>In einem Gebäude</translation>
    </message>
    <message>
        <source>Outdoor</source>
        <translation>Im Freien</translation>
    </message>
    <message>
        <source>Train</source>
        <translation>Im Zug</translation>
    </message>
    <message>
        <source>Car</source>
        <translation>Im Auto/Bus/Tram</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Sonstwo</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>velometer::MainWindow</name>
    <message>
        <source>VeloMeter</source>
        <translation>VeloMeter</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>Wird geladen...</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>Starting new Test Series with Id:</source>
        <translation>Neue Testserie mit der Nummer:</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
</context>
<context>
    <name>velometer::MapLegend</name>
    <message>
        <source>Colour: download</source>
        <translation>Farbe: Download</translation>
    </message>
    <message>
        <source>Colour: connection</source>
        <translation>Farbe: Verbindung</translation>
    </message>
    <message>
        <source>Colour: signal</source>
        <translation>Farbe: Signal</translation>
    </message>
    <message>
        <source>What the colours on the map tell</source>
        <translation>Was die Farben auf der Karte sagen</translation>
    </message>
    <message>
        <source>Tracks</source>
        <translation>Tracks</translation>
    </message>
    <message>
        <source>Record where you go and what your network is there, and what was recorded</source>
        <translation>Aufzeichnen, wo Sie gehen und wie Ihr Netz dort ist, und was aufgezeichnet wurde</translation>
    </message>
</context>
<context>
    <name>velometer::MessagePopup</name>
    <message>
        <source>Please Wait ...</source>
        <translation>Bitte warten ...</translation>
    </message>
</context>
<context>
    <name>velometer::NavigationBar</name>
    <message>
        <source>Test page</source>
        <translation>Seite «Test»</translation>
    </message>
    <message>
        <source>Results page</source>
        <translation>Seite «Resultate»</translation>
    </message>
    <message>
        <source>Settings page</source>
        <translation>Seite «Einstellungen»</translation>
    </message>
    <message>
        <source>Links page</source>
        <translation>Seite «Links»</translation>
    </message>
    <message>
        <source>About page</source>
        <translation>Seite «About»</translation>
    </message>
    <message>
        <source>Test</source>
        <translation>Test</translation>
    </message>
    <message>
        <source>Resultate</source>
        <translation>Resultate</translation>
    </message>
    <message>
        <source>Einstellungen</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Links</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>About</source>
        <translation>About</translation>
    </message>
</context>
<context>
    <name>velometer::NumberOfMeasurementsPopup</name>
    <message>
        <source>Anzahl Messungen:</source>
        <translation>Anzahl Messungen:</translation>
    </message>
    <message>
        <source>Test every:</source>
        <translation>Test alle:</translation>
    </message>
    <message>
        <source>During:</source>
        <translation>Während:</translation>
    </message>
    <message>
        <source>Serienmessung starten</source>
        <translation>Serienmessung starten</translation>
    </message>
    <message>
        <source>Einzelmessung starten</source>
        <translation>Einzelmessung starten</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>%1 tests in %2 h</source>
        <translation>%1 Tests in %2 h</translation>
    </message>
    <message>
        <source>%1, about %2 at your last rate</source>
        <translation>%1, etwa %2 bei Ihrem letzten Tempo</translation>
    </message>
</context>
<context>
    <name>velometer::PageHeader</name>
    <message>
        <source>Web site of the maker</source>
        <translation>Webseite des Herstellers</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schliessen</translation>
    </message>
</context>
<context>
    <name>velometer::Program</name>
    <message>
        <source>Standard output cannot be written: %1.</source>
        <translation>Die Standardausgabe lässt sich nicht schreiben: %1.</translation>
    </message>
    <message>
        <source>The settings cannot be written.</source>
        <translation>Die Einstellungen lassen sich nicht schreiben.</translation>
    </message>
    <message>
        <source>No report waits.</source>
        <translation>Kein Bericht wartet.</translation>
    </message>
    <message>
        <source>Reports delivered: %1, still waiting: %2.</source>
        <translation>Berichte abgeliefert: %1, weiterhin wartend: %2.</translation>
    </message>
    <message>
        <source>Series %1</source>
        <translation>Serie %1</translation>
    </message>
    <message>
        <source>The results in %1 cannot be opened or written.</source>
        <translation>Die Resultate in %1 lassen sich nicht öffnen oder schreiben.</translation>
    </message>
    <message>
        <source>There is no stored test %1.</source>
        <translation>Es gibt keinen gespeicherten Test %1.</translation>
    </message>
    <message>
        <source>This would delete %1 stored tests and %2 waiting reports in %3; say --yes to do it.</source>
        <translation>Das würde %1 gespeicherte Tests und %2 wartende Berichte in %3 löschen; mit --yes geschieht es.</translation>
    </message>
    <message>
        <source>Deleted %1 stored tests and %2 waiting reports.</source>
        <translation>%1 gespeicherte Tests und %2 wartende Berichte gelöscht.</translation>
    </message>
    <message>
        <source>No interrupted series waits to be continued.</source>
        <translation>Es wartet keine unterbrochene Serie auf Fortsetzung.</translation>
    </message>
    <message>
        <source>The results of another version of this program are kept in %1.</source>
        <translation>Die Ergebnisse einer anderen Version dieses Programms sind in %1 aufbewahrt.</translation>
    </message>
    <message>
        <source>You have no page yet: the service gives you one with the first test.</source>
        <translation>Sie haben noch keine Seite: Der Dienst gibt Ihnen eine mit dem ersten Test.</translation>
    </message>
    <message>
        <source>Nothing opens addresses here (xdg-open is missing); open it in a browser by hand.</source>
        <translation>Hier öffnet nichts Adressen (xdg-open fehlt); öffnen Sie sie selbst in einem Browser.</translation>
    </message>
    <message>
        <source>This would delete track %1 with %2 points; say --yes to do it.</source>
        <translation>Das würde den Track %1 mit %2 Punkten löschen; mit --yes geschieht es.</translation>
    </message>
    <message>
        <source>Deleted track %1 with %2 points.</source>
        <translation>Track %1 mit %2 Punkten gelöscht.</translation>
    </message>
    <message>
        <source>Track %1 is being recorded; end it first.</source>
        <translation>Track %1 wird gerade aufgezeichnet; bitte zuerst beenden.</translation>
    </message>
</context>
<context>
    <name>velometer::ResultActions</name>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message numerus="yes">
        <source>%n test(s) written to:</source>
        <translation>
            <numerusform>%n Test geschrieben nach:</numerusform>
            <numerusform>%n Tests geschrieben nach:</numerusform>
        </translation>
    </message>
    <message>
        <source>ErrorTitle</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>%1 kann nicht geschrieben werden: %2</translation>
    </message>
    <message numerus="yes">
        <source>Export %n test(s) as</source>
        <translation>
            <numerusform>%n Test exportieren als</numerusform>
            <numerusform>%n Tests exportieren als</numerusform>
        </translation>
    </message>
    <message>
        <source>CSV, for spreadsheets</source>
        <translation>CSV, für Tabellen</translation>
    </message>
    <message>
        <source>JSON, one test a line</source>
        <translation>JSON, ein Test pro Zeile</translation>
    </message>
    <message>
        <source>GeoJSON, for maps</source>
        <translation>GeoJSON, für Karten</translation>
    </message>
    <message>
        <source>GPX, for navigation devices</source>
        <translation>GPX, für Navigationsgeräte</translation>
    </message>
    <message>
        <source>%1 of %2 tests</source>
        <translation>%1 von %2 Tests</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message numerus="yes">
        <source>Share %n test(s)</source>
        <translation>
            <numerusform>%n Test teilen</numerusform>
            <numerusform>%n Tests teilen</numerusform>
        </translation>
    </message>
    <message>
        <source>Copy text</source>
        <translation>Text kopieren</translation>
    </message>
    <message>
        <source>Save JSON</source>
        <translation>JSON speichern</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>Bild speichern</translation>
    </message>
    <message>
        <source>Share</source>
        <translation>Teilen</translation>
    </message>
    <message numerus="yes">
        <source>The text of %n test(s) is on the clipboard: paste it where you want it.</source>
        <translation>
            <numerusform>Der Text von %n Test ist in der Zwischenablage: Fügen Sie ihn ein, wo Sie wollen.</numerusform>
            <numerusform>Der Text von %n Tests ist in der Zwischenablage: Fügen Sie ihn ein, wo Sie wollen.</numerusform>
        </translation>
    </message>
    <message>
        <source>The picture is in:</source>
        <translation>Das Bild liegt in:</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>While a test or a series runs nothing can be deleted.</source>
        <translation>Solange ein Test oder eine Serie läuft, kann nichts gelöscht werden.</translation>
    </message>
    <message numerus="yes">
        <source>%n test(s) on this device will be deleted. What the service has of them stays there.</source>
        <translation>
            <numerusform>%n Test auf diesem Gerät wird gelöscht. Was der Dienst davon hat, bleibt dort.</numerusform>
            <numerusform>%n Tests auf diesem Gerät werden gelöscht. Was der Dienst davon hat, bleibt dort.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n report(s) of them wait to be sent; the service will never get them.</source>
        <translation>
            <numerusform>%n Bericht davon wartet noch aufs Senden; der Dienst wird ihn nie bekommen.</numerusform>
            <numerusform>%n Berichte davon warten noch aufs Senden; der Dienst wird sie nie bekommen.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n test(s) deleted.</source>
        <translation>
            <numerusform>%n Test gelöscht.</numerusform>
            <numerusform>%n Tests gelöscht.</numerusform>
        </translation>
    </message>
    <message>
        <source>Nothing was deleted: the results in %1 cannot be written at the moment. Try again when no other program uses them.</source>
        <translation>Nichts wurde gelöscht: Die Resultate in %1 können im Moment nicht geschrieben werden. Versuchen Sie es wieder, wenn kein anderes Programm sie benutzt.</translation>
    </message>
</context>
<context>
    <name>velometer::ResultCard</name>
    <message>
        <source>Download</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>Upload</translation>
    </message>
    <message>
        <source>RTT</source>
        <translation>RTT</translation>
    </message>
</context>
<context>
    <name>velometer::ResultGroupHeader</name>
    <message>
        <source>Unknown day</source>
        <translation>Tag unbekannt</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
    <message>
        <source>Yesterday</source>
        <translation>Gestern</translation>
    </message>
    <message>
        <source>%1 · Series %2</source>
        <translation>%1 · Serie %2</translation>
    </message>
    <message>
        <source>Fastest download first</source>
        <translation>Schnellster Download zuerst</translation>
    </message>
    <message>
        <source>Fastest upload first</source>
        <translation>Schnellster Upload zuerst</translation>
    </message>
    <message>
        <source>Shortest RTT first</source>
        <translation>Kürzeste RTT zuerst</translation>
    </message>
    <message numerus="yes">
        <source>%n test(s)</source>
        <translation>
            <numerusform>%n Test</numerusform>
            <numerusform>%n Tests</numerusform>
        </translation>
    </message>
    <message>
        <source>open</source>
        <translation>offen</translation>
    </message>
    <message>
        <source>closed</source>
        <translation>geschlossen</translation>
    </message>
    <message>
        <source>Median</source>
        <translation>Median</translation>
    </message>
</context>
<context>
    <name>velometer::ResultsTab</name>
    <message>
        <source>Please Wait ...</source>
        <translation>Bitte warten ...</translation>
    </message>
    <message>
        <source>No tests yet.</source>
        <translation>Noch keine Tests.</translation>
    </message>
    <message>
        <source>Show locations on map</source>
        <translation>Orte auf der Karte zeigen</translation>
    </message>
    <message>
        <source>Transferred Data %1 MB (%2 MB mobile)</source>
        <translation>Übertragene Daten %1 MB (%2 MB mobil)</translation>
    </message>
    <message>
        <source>Open on the service</source>
        <translation>Auf der Webseite öffnen</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Resultate</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Server, place, date, number</source>
        <translation>Server, Ort, Datum, Nummer</translation>
    </message>
    <message>
        <source>Clear filter</source>
        <translation>Filter löschen</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>Share</source>
        <translation>Teilen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Start one on the test page.</source>
        <translation>Starten Sie einen auf der Testseite.</translation>
    </message>
    <message>
        <source>No test is like this.</source>
        <translation>Kein Test ist so.</translation>
    </message>
    <message>
        <source>Change or clear the filter.</source>
        <translation>Ändern oder löschen Sie den Filter.</translation>
    </message>
    <message>
        <source>%1 selected</source>
        <translation>%1 ausgewählt</translation>
    </message>
    <message numerus="yes">
        <source>%n test(s)</source>
        <translation>
            <numerusform>%n Test</numerusform>
            <numerusform>%n Tests</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 of %2 tests</source>
        <translation>%1 von %2 Tests</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
</context>
<context>
    <name>velometer::ServerSelection</name>
    <message>
        <source>There is no server &quot;%1&quot;; use HOST[:PORT] or one of: %2.</source>
        <translation>Den Server «%1» gibt es nicht; möglich sind HOST[:PORT] oder: %2.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no server address; write HOST[:PORT] with a port from 1 to 65535, an IPv6 address in brackets.</source>
        <translation>«%1» ist keine Serveradresse; schreiben Sie HOST[:PORT] mit einem Port von 1 bis 65535, eine IPv6-Adresse in Klammern.</translation>
    </message>
</context>
<context>
    <name>velometer::SettingsTab</name>
    <message>
        <source>Start New Test Series</source>
        <translation>Neue Testserie beginnen</translation>
    </message>
    <message>
        <source>Clear Local Database</source>
        <translation>Lokale Datenbank löschen</translation>
    </message>
    <message>
        <source>Choose Test Server</source>
        <translation>Testserver wählen</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>Sprache:</translation>
    </message>
    <message>
        <source>Advanced mode:</source>
        <translation>Erweiterter Modus:</translation>
    </message>
    <message>
        <source>Advanced mode</source>
        <translation>Erweiterter Modus</translation>
    </message>
    <message>
        <source>Data per test:</source>
        <translation>Daten pro Test:</translation>
    </message>
    <message>
        <source>Data per test</source>
        <translation>Daten pro Test</translation>
    </message>
    <message>
        <source>No limit</source>
        <translation>Kein Limit</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Look:</source>
        <translation>Aussehen:</translation>
    </message>
    <message>
        <source>Look</source>
        <translation>Aussehen</translation>
    </message>
    <message>
        <source>Larger text:</source>
        <translation>Grössere Schrift:</translation>
    </message>
    <message>
        <source>Larger text</source>
        <translation>Grössere Schrift</translation>
    </message>
    <message>
        <source>The start button then begins a series of tests.</source>
        <translation>Der Startknopf beginnt dann eine Serie von Tests.</translation>
    </message>
    <message>
        <source>As the device</source>
        <translation>Wie das Gerät</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Classic</source>
        <translation>Klassisch</translation>
    </message>
    <message>
        <source>Not while a test or a series runs.</source>
        <translation>Nicht während ein Test oder eine Testserie läuft.</translation>
    </message>
    <message>
        <source>Delay under load:</source>
        <translation>Verzögerung unter Last:</translation>
    </message>
    <message>
        <source>Each test then fills the line for 5 s more each way, as large transfers do, to tell what suffers. That takes about 70 % more data, within the limit.</source>
        <translation>Jeder Test füllt die Leitung dann je Richtung weitere 5 s, wie es grosse Übertragungen tun, und sagt, was darunter leidet. Das braucht etwa 70 % mehr Daten, innerhalb der Grenze.</translation>
    </message>
    <message>
        <source>Delay under load</source>
        <translation>Verzögerung unter Last</translation>
    </message>
</context>
<context>
    <name>velometer::ShareText</name>
    <message>
        <source>na</source>
        <translation>k. A.</translation>
    </message>
    <message>
        <source>Test %1, %2</source>
        <translation>Test %1, %2</translation>
    </message>
    <message>
        <source>Download: %1</source>
        <translation>Download: %1</translation>
    </message>
    <message>
        <source>Upload: %1</source>
        <translation>Upload: %1</translation>
    </message>
    <message>
        <source>RTT: %1</source>
        <translation>RTT: %1</translation>
    </message>
</context>
<context>
    <name>velometer::Shortcuts</name>
    <message>
        <source>start a test or series, end a series</source>
        <translation>Test oder Serie starten, Serie abbrechen</translation>
    </message>
    <message>
        <source>stop the running test</source>
        <translation>laufenden Test anhalten</translation>
    </message>
    <message>
        <source>test</source>
        <translation>Test</translation>
    </message>
    <message>
        <source>results</source>
        <translation>Resultate</translation>
    </message>
    <message>
        <source>settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>links</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>about</source>
        <translation>About</translation>
    </message>
    <message>
        <source>search in the results</source>
        <translation>in den Resultaten suchen</translation>
    </message>
    <message>
        <source>these keys</source>
        <translation>diese Tasten</translation>
    </message>
    <message>
        <source>end the program</source>
        <translation>Programm beenden</translation>
    </message>
</context>
<context>
    <name>velometer::SleepInhibitor</name>
    <message>
        <source>A measurement runs.</source>
        <translation>Eine Messung läuft.</translation>
    </message>
</context>
<context>
    <name>velometer::StartDialogue</name>
    <message>
        <source>Test Series</source>
        <translation>Testserie</translation>
    </message>
    <message>
        <source>A series was interrupted. Test %1 of %2 was next. Continue?</source>
        <translation>Eine Serie wurde unterbrochen. Test %1 von %2 war der nächste. Fortsetzen?</translation>
    </message>
    <message>
        <source>Yes, continue</source>
        <translation>Ja, fortsetzen</translation>
    </message>
    <message>
        <source>No, forget it</source>
        <translation>Nein, verwerfen</translation>
    </message>
    <message>
        <source>Yes, start test</source>
        <translation>Ja, Test starten</translation>
    </message>
    <message>
        <source>No, don&apos;t test</source>
        <translation>Nein, nicht testen</translation>
    </message>
</context>
<context>
    <name>velometer::StoreDialogue</name>
    <message>
        <source>ErrorTitle</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>The results in %1 cannot be opened or written. Make room or correct the rights of this folder, then start again.</source>
        <translation>Die Resultate in %1 lassen sich nicht öffnen oder schreiben. Schaffen Sie Platz oder berichtigen Sie die Rechte dieses Ordners und starten Sie neu.</translation>
    </message>
    <message>
        <source>Please Wait</source>
        <translation>Bitte warten</translation>
    </message>
    <message>
        <source>Database is beeing reseted...</source>
        <translation>Die Datenbank wird zurückgesetzt...</translation>
    </message>
    <message>
        <source>Clear Database</source>
        <translation>Datenbank löschen</translation>
    </message>
    <message>
        <source>Database has been reseted</source>
        <translation>Die Datenbank wurde zurückgesetzt</translation>
    </message>
    <message>
        <source>Nothing was deleted: the results in %1 cannot be written at the moment. Try again when no other program uses them.</source>
        <translation>Nichts wurde gelöscht: Die Resultate in %1 lassen sich im Moment nicht schreiben. Versuchen Sie es wieder, wenn kein anderes Programm sie benutzt.</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>The results of another version of this program are kept in %1.</source>
        <translation>Die Ergebnisse einer anderen Version dieses Programms sind in %1 aufbewahrt.</translation>
    </message>
    <message>
        <source>Stored tests that are deleted: %1. Reports that the service does not have yet: %2. The tests stay on the service. To keep a copy here, export them before: velometer-cli export --format csv</source>
        <translation>Gespeicherte Tests, die gelöscht werden: %1. Berichte, die der Dienst noch nicht hat: %2. Auf dem Dienst bleiben die Tests. Für eine Kopie exportieren Sie sie zuvor: velometer-cli export --format csv</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>velometer::TestConsent</name>
    <message>
        <source>This connection is probably metered.</source>
        <translation>Diese Verbindung wird wahrscheinlich nach Verbrauch verrechnet.</translation>
    </message>
    <message>
        <source>This connection is metered.</source>
        <translation>Diese Verbindung wird nach Verbrauch verrechnet.</translation>
    </message>
    <message>
        <source>A test uses at most %1.</source>
        <translation>Ein Test braucht höchstens %1.</translation>
    </message>
    <message>
        <source>CostsQuestion</source>
        <translation>Ein Test lastet die Verbindung 14 Sekunden lang aus. In einem schnellen Netz sind das mehrere hundert Megabyte, die je nach Abo etwas kosten. Test starten?</translation>
    </message>
    <message>
        <source>Costs</source>
        <translation>Kosten</translation>
    </message>
    <message>
        <source>Roaming</source>
        <translation>Roaming</translation>
    </message>
    <message>
        <source>RoamingQuestion</source>
        <translation>Ihr Gerät ist im Roaming. Ein Test überträgt so viele Daten, wie in 14 Sekunden möglich sind, und kann teuer werden. Trotzdem starten?</translation>
    </message>
    <message>
        <source>The connection is metered (guessed from its kind); a test may cost money.</source>
        <translation>Die Verbindung wird nach Verbrauch verrechnet (aus ihrer Art geschlossen); ein Test kann etwas kosten.</translation>
    </message>
    <message>
        <source>The connection is metered; a test may cost money.</source>
        <translation>Die Verbindung wird nach Verbrauch verrechnet; ein Test kann etwas kosten.</translation>
    </message>
    <message>
        <source>The device is roaming; a test may be expensive. --allow-roaming tests all the same.</source>
        <translation>Das Gerät ist im Roaming, ein Test kann teuer werden; --allow-roaming misst trotzdem.</translation>
    </message>
</context>
<context>
    <name>velometer::TestController</name>
    <message>
        <source>testphase_init</source>
        <translation>Test wird vorbereitet</translation>
    </message>
    <message>
        <source>noConnectionText</source>
        <translation>Es besteht keine Verbindung zum Netz.</translation>
    </message>
    <message>
        <source>noConnectionToServer</source>
        <translation>Der Testserver ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>errorInit</source>
        <translation>Der Testserver hat den Test nicht angenommen.</translation>
    </message>
    <message>
        <source>testphase_download</source>
        <translation>Download wird gemessen</translation>
    </message>
    <message>
        <source>na</source>
        <translation>k. A.</translation>
    </message>
    <message>
        <source>testphase_wait</source>
        <translation>Bitte warten</translation>
    </message>
    <message>
        <source>testphase_upload</source>
        <translation>Upload wird gemessen</translation>
    </message>
    <message>
        <source>testphase_rtt</source>
        <translation>RTT wird gemessen</translation>
    </message>
    <message>
        <source>testphase_sendresults</source>
        <translation>Resultate senden</translation>
    </message>
    <message>
        <source>DataTransferred</source>
        <translation>Übertragene Daten </translation>
    </message>
    <message>
        <source>positionunknown</source>
        <translation>Position unbekannt</translation>
    </message>
    <message>
        <source>positionknown</source>
        <translation>Genauigkeit %1 m, Höhe %2 m</translation>
    </message>
    <message>
        <source>positionabout</source>
        <translation>Position ungefähr bekannt</translation>
    </message>
    <message>
        <source>Another program holds the results locked; waiting for them.</source>
        <translation>Ein anderes Programm hält die Ergebnisse gesperrt; es wird auf sie gewartet.</translation>
    </message>
    <message>
        <source>testphase_delays</source>
        <translation>Verzögerung wird gemessen</translation>
    </message>
    <message>
        <source>testphase_room</source>
        <translation>Der Dienst ist belegt. Nächster Versuch in %1 s</translation>
    </message>
</context>
<context>
    <name>velometer::TestDetails</name>
    <message>
        <source>n/a</source>
        <translation>k. A.</translation>
    </message>
</context>
<context>
    <name>velometer::TestDisplay</name>
    <message>
        <source>aborting...</source>
        <translation>wird abgebrochen...</translation>
    </message>
    <message>
        <source>Abort Test</source>
        <translation>Test abbrechen</translation>
    </message>
    <message>
        <source>Start Test</source>
        <translation>Test starten</translation>
    </message>
    <message>
        <source>Next measurement in %1:%2 minutes.</source>
        <translation>Nächste Messung in %1:%2 Minuten.</translation>
    </message>
    <message>
        <source>Test Series</source>
        <translation>Testserie</translation>
    </message>
    <message>
        <source>The interrupted series is over: its tests from %1 to %2 were missed.</source>
        <translation>Die unterbrochene Serie ist vorbei: Ihre Tests %1 bis %2 wurden versäumt.</translation>
    </message>
    <message>
        <source>Tests from %1 to %2 of %3 were missed.</source>
        <translation>Die Tests %1 bis %2 von %3 wurden versäumt.</translation>
    </message>
    <message>
        <source>ErrorTitle</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>The test could not be stored in %1. Make room or correct the rights of this folder.</source>
        <translation>Der Test liess sich nicht in %1 speichern. Schaffen Sie Platz oder berichtigen Sie die Rechte dieses Ordners.</translation>
    </message>
    <message>
        <source>The data budget ended the test early.</source>
        <translation>Das Datenlimit hat den Test vorzeitig beendet.</translation>
    </message>
    <message>
        <source>The report waits and goes out with the next test.</source>
        <translation>Der Bericht wartet und wird mit dem nächsten Test gesendet.</translation>
    </message>
    <message>
        <source>na</source>
        <translation>k. A.</translation>
    </message>
    <message>
        <source>Another program holds the results; this test joins them later.</source>
        <translation>Ein anderes Programm hält die Resultate; dieser Test kommt später dazu.</translation>
    </message>
    <message>
        <source>On the service everything of this user was deleted; the next test begins with a new user.</source>
        <translation>Auf dem Dienst wurde alles von diesem Benutzer gelöscht; der nächste Test beginnt mit einem neuen.</translation>
    </message>
    <message>
        <source>Last test, %1
%2 / %3 kBit/s, %4</source>
        <translation>Letzter Test, %1
%2 / %3 kBit/s, %4</translation>
    </message>
    <message>
        <source>kBit/s now</source>
        <translation>kBit/s jetzt</translation>
    </message>
    <message>
        <source>Waiting for a network connection.</source>
        <translation>Es wird auf eine Netzverbindung gewartet.</translation>
    </message>
    <message>
        <source>Waiting for an answer of the service at %1.</source>
        <translation>Es wird auf eine Antwort des Dienstes bei %1 gewartet.</translation>
    </message>
    <message>
        <source>Waiting for an answer of the test server %1.</source>
        <translation>Es wird auf eine Antwort des Testservers %1 gewartet.</translation>
    </message>
    <message>
        <source>Stopped.</source>
        <translation>Angehalten.</translation>
    </message>
    <message>
        <source>ms now</source>
        <translation>ms jetzt</translation>
    </message>
    <message>
        <source>The series has ended after %1 of %2 tests.</source>
        <translation>Die Serie ist nach %1 von %2 Tests zu Ende.</translation>
    </message>
    <message>
        <source>The test has ended.</source>
        <translation>Der Test ist zu Ende.</translation>
    </message>
</context>
<context>
    <name>velometer::TestResultWidget</name>
    <message>
        <source>na</source>
        <translation>k. A.</translation>
    </message>
    <message>
        <source>%1, %2 %3, %4, %5, %6, download %7, upload %8, RTT %9</source>
        <translation>%1, %2 %3, %4, %5, %6, Download %7, Upload %8, RTT %9</translation>
    </message>
    <message>
        <source>selected</source>
        <translation>ausgewählt</translation>
    </message>
    <message>
        <source>not selected</source>
        <translation>nicht ausgewählt</translation>
    </message>
</context>
<context>
    <name>velometer::TestRunner</name>
    <message>
        <source>download</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>upload</source>
        <translation>Upload</translation>
    </message>
    <message>
        <source>round-trip time</source>
        <translation>Antwortzeit</translation>
    </message>
    <message>
        <source>The reports in %1 cannot be written.</source>
        <translation>Die Berichte in %1 lassen sich nicht schreiben.</translation>
    </message>
    <message>
        <source>The service did not take every report.</source>
        <translation>Der Dienst hat nicht alle Berichte angenommen.</translation>
    </message>
    <message>
        <source>The service cannot be reached.</source>
        <translation>Der Dienst ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>The test was stopped.</source>
        <translation>Der Test wurde gestoppt.</translation>
    </message>
    <message>
        <source>The test could not be stored in %1.</source>
        <translation>Der Test konnte nicht in %1 gespeichert werden.</translation>
    </message>
    <message>
        <source>The test is incomplete; missing or cut short: %1.</source>
        <translation>Der Test ist unvollständig; es fehlt oder wurde verkürzt: %1.</translation>
    </message>
    <message>
        <source>The test failed.</source>
        <translation>Der Test ist gescheitert.</translation>
    </message>
    <message>
        <source>The report waits in the queue and goes out with the next test.</source>
        <translation>Der Bericht wartet und wird mit dem nächsten Test gesendet.</translation>
    </message>
    <message>
        <source>Download: %1</source>
        <translation>Download: %1</translation>
    </message>
    <message>
        <source>Upload: %1</source>
        <translation>Upload: %1</translation>
    </message>
    <message>
        <source>Round-trip time: %1</source>
        <translation>Antwortzeit: %1</translation>
    </message>
    <message>
        <source>The test reached its data budget (%1) and is stored as far as it came; --max-bytes gives it more, --max-bytes 0 lifts the limit.</source>
        <translation>Der Test hat sein Datenlimit erreicht (%1) und ist gespeichert, so weit er kam; --max-bytes gibt ihm mehr, --max-bytes 0 hebt das Limit auf.</translation>
    </message>
    <message>
        <source>The series that was interrupted is over: its tests from %1 to %2 were missed.</source>
        <translation>Die unterbrochene Serie ist vorbei: Ihre Tests %1 bis %2 wurden versäumt.</translation>
    </message>
    <message>
        <source>A series was interrupted: test %1 of %2 is next. --resume continues it; a new series takes its place.</source>
        <translation>Eine Serie wurde unterbrochen: Test %1 von %2 ist der nächste. --resume setzt sie fort; eine neue Serie tritt an ihre Stelle.</translation>
    </message>
    <message>
        <source>Test %1 of %2 was missed.</source>
        <translation>Test %1 von %2 wurde versäumt.</translation>
    </message>
    <message>
        <source>Tests %1 to %2 of %3 were missed.</source>
        <translation>Tests %1 bis %2 von %3 wurden versäumt.</translation>
    </message>
    <message>
        <source>Waiting for a position, at most %1 s.</source>
        <translation>Es wird höchstens %1 s auf eine Position gewartet.</translation>
    </message>
    <message>
        <source>Another program holds %1; the test joins it with the next one.</source>
        <translation>Ein anderes Programm hält %1; der Test kommt mit dem nächsten hinein.</translation>
    </message>
    <message>
        <source>On the service everything of this user was deleted, and it takes no more tests of his; the next test begins with a new user.</source>
        <translation>Auf dem Dienst wurde alles von diesem Benutzer gelöscht, und er nimmt keine Tests mehr von ihm an; der nächste Test beginnt mit einem neuen Benutzer.</translation>
    </message>
</context>
<context>
    <name>velometer::TestServerTable</name>
    <message>
        <source>Zürich</source>
        <translation>Zürich</translation>
    </message>
    <message>
        <source>Bern</source>
        <translation>Bern</translation>
    </message>
    <message>
        <source>Rapperswil</source>
        <translation>Rapperswil</translation>
    </message>
    <message>
        <source>St. Gallen</source>
        <translation>St. Gallen</translation>
    </message>
    <message>
        <source>IP-Plus Germany</source>
        <translation>IP-Plus Deutschland</translation>
    </message>
    <message>
        <source>Frankfurt</source>
        <translation>Frankfurt</translation>
    </message>
    <message>
        <source>IP-Plus Italy</source>
        <translation>IP-Plus Italien</translation>
    </message>
    <message>
        <source>Mailand</source>
        <translation>Mailand</translation>
    </message>
    <message>
        <source>IP-Plus New York</source>
        <translation>IP-Plus New York</translation>
    </message>
    <message>
        <source>New York</source>
        <translation>New York</translation>
    </message>
</context>
<context>
    <name>velometer::TestTab</name>
    <message>
        <source>Location:</source>
        <translation>Ort:</translation>
    </message>
    <message>
        <source>Test Server:</source>
        <translation>Testserver:</translation>
    </message>
    <message>
        <source>Series ID / Test ID:</source>
        <translation>Serie / Test:</translation>
    </message>
    <message>
        <source>Position:</source>
        <translation>Position:</translation>
    </message>
    <message>
        <source>Download:</source>
        <translation>Download:</translation>
    </message>
    <message>
        <source>Upload:</source>
        <translation>Upload:</translation>
    </message>
    <message>
        <source>RTT:</source>
        <translation>RTT:</translation>
    </message>
    <message>
        <source>Progress of the measurement</source>
        <translation>Fortschritt der Messung</translation>
    </message>
    <message>
        <source>Start Test</source>
        <translation>Test starten</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stopp</translation>
    </message>
    <message>
        <source>%1 (fixed for this test)</source>
        <translation>%1 (während des Tests fest)</translation>
    </message>
</context>
<context>
    <name>velometer::ThroughputPlot</name>
    <message>
        <source>Throughput over time</source>
        <translation>Durchsatz im Zeitverlauf</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>Upload</translation>
    </message>
    <message>
        <source>%1, %2 s</source>
        <translation>%1, %2 s</translation>
    </message>
    <message>
        <source>%1 on average %2, at most %3 %4</source>
        <translation>%1 im Mittel %2, höchstens %3 %4</translation>
    </message>
</context>
<context>
    <name>velometer::TrackControl</name>
    <message>
        <source>Another program holds the results; points wait for it.</source>
        <translation>Ein anderes Programm hält die Resultate; die Punkte warten darauf.</translation>
    </message>
    <message>
        <source>The service shows the track on your page.</source>
        <translation>Der Dienst zeigt den Track auf Ihrer Seite.</translation>
    </message>
    <message>
        <source>Tracks</source>
        <translation>Tracks</translation>
    </message>
    <message>
        <source>Another program records a track here; end it first.</source>
        <translation>Ein anderes Programm zeichnet hier einen Track auf; beenden Sie es zuerst.</translation>
    </message>
    <message>
        <source>ErrorTitle</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>The results in %1 cannot be written at the moment. Try again when no other program uses them.</source>
        <translation>Die Resultate in %1 lassen sich im Moment nicht schreiben. Versuchen Sie es wieder, wenn kein anderes Programm sie benutzt.</translation>
    </message>
    <message>
        <source>The end of the track could not be stored; the last track can be gone on with.</source>
        <translation>Das Ende des Tracks liess sich nicht speichern; der letzte Track kann fortgesetzt werden.</translation>
    </message>
    <message>
        <source>A test on the way was left out: it would have needed your answer.</source>
        <translation>Ein Test unterwegs wurde ausgelassen: Er hätte Ihre Antwort gebraucht.</translation>
    </message>
    <message>
        <source>Show on the map</source>
        <translation>Auf der Karte zeigen</translation>
    </message>
    <message>
        <source>Save CSV, for spreadsheets</source>
        <translation>CSV speichern, für Tabellenprogramme</translation>
    </message>
    <message>
        <source>Save GeoJSON, for maps</source>
        <translation>GeoJSON speichern, für Karten</translation>
    </message>
    <message>
        <source>Save GPX, for navigation devices</source>
        <translation>GPX speichern, für Navigationsgeräte</translation>
    </message>
    <message>
        <source>Delete …</source>
        <translation>Löschen …</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>The track is in:</source>
        <translation>Der Track ist in:</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>%1 lässt sich nicht schreiben: %2</translation>
    </message>
    <message>
        <source>Delete this track from the device? What the service has of it stays there.</source>
        <translation>Diesen Track vom Gerät löschen? Was der Dienst von ihm hat, bleibt dort.</translation>
    </message>
    <message>
        <source>Delete: %1</source>
        <translation>Löschen: %1</translation>
    </message>
</context>
<context>
    <name>velometer::TrackRunner</name>
    <message>
        <source>Another program holds the results; points wait for it.</source>
        <translation>Ein anderes Programm hält die Resultate; die Punkte warten darauf.</translation>
    </message>
    <message>
        <source>No interrupted track waits to be continued.</source>
        <translation>Kein unterbrochener Track wartet auf seine Fortsetzung.</translation>
    </message>
    <message>
        <source>A track was interrupted and ends where it stood; --resume would have continued it.</source>
        <translation>Ein Track war unterbrochen und endet, wo er stand; --resume hätte ihn fortgesetzt.</translation>
    </message>
    <message>
        <source>Another program records a track here; end it first.</source>
        <translation>Ein anderes Programm zeichnet hier einen Track auf; beenden Sie es zuerst.</translation>
    </message>
    <message>
        <source>The results in %1 cannot be opened or written.</source>
        <translation>Die Resultate in %1 lassen sich nicht öffnen oder schreiben.</translation>
    </message>
    <message>
        <source>no position</source>
        <translation>keine Position</translation>
    </message>
    <message>
        <source>The end of the track could not be stored in %1; --resume goes on with it.</source>
        <translation>Das Ende des Tracks liess sich nicht in %1 speichern; --resume setzt ihn fort.</translation>
    </message>
    <message>
        <source>Track %1: %2 in %3, %4 points, %5 tests</source>
        <translation>Track %1: %2 in %3, %4 Punkte, %5 Tests</translation>
    </message>
    <message>
        <source>tracks --send tries it again.</source>
        <translation>tracks --send versucht es noch einmal.</translation>
    </message>
    <message>
        <source>Bringing the track to the service</source>
        <translation>Der Track geht an den Dienst</translation>
    </message>
</context>
<context>
    <name>velometer::TrackTab</name>
    <message>
        <source>Tracks</source>
        <translation>Tracks</translation>
    </message>
    <message>
        <source>Back to the map</source>
        <translation>Zurück zur Karte</translation>
    </message>
    <message>
        <source>End the track</source>
        <translation>Track beenden</translation>
    </message>
    <message>
        <source>each %1</source>
        <translation>alle %1</translation>
    </message>
    <message>
        <source>each %1 s</source>
        <translation>alle %1 s</translation>
    </message>
    <message>
        <source>each %1 min</source>
        <translation>alle %1 min</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>%1 m</source>
        <translation>%1 m</translation>
    </message>
    <message>
        <source>%1 km</source>
        <translation>%1 km</translation>
    </message>
    <message numerus="yes">
        <source>%n point(s)</source>
        <translation>
            <numerusform>%n Punkt</numerusform>
            <numerusform>%n Punkte</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n test(s)</source>
        <translation>
            <numerusform>%n Test</numerusform>
            <numerusform>%n Tests</numerusform>
        </translation>
    </message>
    <message>
        <source>Go on with the last track</source>
        <translation>Letzten Track fortsetzen</translation>
    </message>
    <message>
        <source>Record a track</source>
        <translation>Track aufzeichnen</translation>
    </message>
    <message>
        <source>Go on</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>It goes on while you use other pages and other programs.</source>
        <translation>Es geht weiter, während Sie andere Seiten und Programme benutzen.</translation>
    </message>
    <message>
        <source>Records where you are and what your network is there, without any traffic.</source>
        <translation>Zeichnet ohne Datenverkehr auf, wo Sie sind und wie Ihr Netz dort ist.</translation>
    </message>
    <message>
        <source>A track was interrupted.</source>
        <translation>Ein Track wurde unterbrochen.</translation>
    </message>
    <message>
        <source>Nothing is being recorded.</source>
        <translation>Nichts wird aufgezeichnet.</translation>
    </message>
    <message>
        <source>paused</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>cell %1</source>
        <translation>Zelle %1</translation>
    </message>
    <message>
        <source>no position</source>
        <translation>keine Position</translation>
    </message>
    <message>
        <source>Cannot be changed while a track is recorded.</source>
        <translation>Lässt sich nicht ändern, solange ein Track aufgezeichnet wird.</translation>
    </message>
    <message>
        <source>Point: %1</source>
        <translation>Punkt: %1</translation>
    </message>
    <message>
        <source>Tests: %1</source>
        <translation>Tests: %1</translation>
    </message>
    <message>
        <source>A point of the track</source>
        <translation>Ein Punkt des Tracks</translation>
    </message>
    <message>
        <source>Tests on the way</source>
        <translation>Tests unterwegs</translation>
    </message>
</context>
<context>
    <name>velometer::TrackUpload</name>
    <message>
        <source>The service does not know you yet: run one test, then send the track.</source>
        <translation>Der Dienst kennt Sie noch nicht: Machen Sie einen Test und senden Sie dann den Track.</translation>
    </message>
    <message>
        <source>The service does not keep the track.</source>
        <translation>Der Dienst behält den Track nicht.</translation>
    </message>
    <message>
        <source>The service cannot be reached; the track waits for it.</source>
        <translation>Der Dienst ist nicht erreichbar; der Track wartet auf ihn.</translation>
    </message>
    <message>
        <source>The service did not take the track (%1).</source>
        <translation>Der Dienst hat den Track nicht angenommen (%1).</translation>
    </message>
    <message>
        <source>The service did not take the track: %1</source>
        <translation>Der Dienst hat den Track nicht angenommen: %1</translation>
    </message>
    <message>
        <source>The results in %1 cannot be opened or written.</source>
        <translation>Die Resultate in %1 lassen sich nicht öffnen oder schreiben.</translation>
    </message>
</context>
<context>
    <name>velometer::Utils</name>
    <message>
        <source>conntypeMobile</source>
        <translation>Mobile</translation>
    </message>
    <message>
        <source>conntypeWLAN</source>
        <translation>WLAN</translation>
    </message>
    <message>
        <source>conntypeother</source>
        <translation>Andere</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>Mobile(GSM)</source>
        <translation>Mobile(GSM)</translation>
    </message>
    <message>
        <source>Mobile(CDMA)</source>
        <translation>Mobile(CDMA)</translation>
    </message>
    <message>
        <source>Mobile(UMTS)</source>
        <translation>Mobile(UMTS)</translation>
    </message>
    <message>
        <source>WLAN</source>
        <translation>WLAN</translation>
    </message>
    <message>
        <source>Ethernet</source>
        <translation>Ethernet</translation>
    </message>
    <message>
        <source>Bluetooth</source>
        <translation>Bluetooth</translation>
    </message>
    <message>
        <source>Wimax</source>
        <translation>Wimax</translation>
    </message>
    <message>
        <source>Mobile(LTE)</source>
        <translation>Mobile(LTE)</translation>
    </message>
    <message>
        <source>Mobile(5G)</source>
        <translation>Mobile(5G)</translation>
    </message>
    <message>
        <source>LocationUnknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>LocationUnknownShort</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>LocationIndoor</source>
        <translation>In einem Gebäude</translation>
    </message>
    <message>
        <source>LocationIndoorShort</source>
        <translation>Drinnen</translation>
    </message>
    <message>
        <source>LocationOutdoor</source>
        <translation>Im Freien</translation>
    </message>
    <message>
        <source>LocationOutdoorShort</source>
        <translation>Draussen</translation>
    </message>
    <message>
        <source>LocationTrain</source>
        <translation>Im Zug</translation>
    </message>
    <message>
        <source>LocationTrainShort</source>
        <translation>Zug</translation>
    </message>
    <message>
        <source>LocationCar</source>
        <translation>Im Auto/Bus/Tram</translation>
    </message>
    <message>
        <source>LocationCarShort</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>LocationOther</source>
        <translation>Sonstwo</translation>
    </message>
    <message>
        <source>LocationOtherShort</source>
        <translation>Sonstwo</translation>
    </message>
</context>
</TS>
