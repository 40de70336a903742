<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>CommandLine</name>
    <message>
        <source>show needs the ID of a test, as results lists it.</source>
        <translation>show needs the ID of a test, as results lists it.</translation>
    </message>
    <message>
        <source>--interval needs --count with at least 2 tests.</source>
        <translation>--interval needs --count with at least 2 tests.</translation>
    </message>
    <message>
        <source>export needs --format with %1.</source>
        <translation>export needs --format with %1.</translation>
    </message>
    <message>
        <source>--resume goes on with what the series began with; leave out --count, --interval and --location.</source>
        <translation>--resume goes on with what the series began with; leave out --count, --interval and --location.</translation>
    </message>
    <message>
        <source>velometer-cli measures download, upload and round-trip time of this connection.</source>
        <translation>velometer-cli measures download, upload and round-trip time of this connection.</translation>
    </message>
    <message>
        <source>run a test, or a series of them</source>
        <translation>run a test, or a series of them</translation>
    </message>
    <message>
        <source>list the stored tests</source>
        <translation>list the stored tests</translation>
    </message>
    <message>
        <source>Lists the stored tests, the newest first.</source>
        <translation>Lists the stored tests, the newest first.</translation>
    </message>
    <message>
        <source>one stored test</source>
        <translation>one stored test</translation>
    </message>
    <message>
        <source>One stored test: ID as results lists it, or SERIES/TEST.</source>
        <translation>One stored test: ID as results lists it, or SERIES/TEST.</translation>
    </message>
    <message>
        <source>all stored tests for other programs</source>
        <translation>all stored tests for other programs</translation>
    </message>
    <message>
        <source>All stored tests, the newest first: a table, a JSON object a line, a GeoJSON
collection, or a GPX waypoint for each test whose position is known.</source>
        <translation>All stored tests, the newest first: a table, a JSON object a line, a GeoJSON
collection, or a GPX waypoint for each test whose position is known.</translation>
    </message>
    <message>
        <source>the servers to test against</source>
        <translation>the servers to test against</translation>
    </message>
    <message>
        <source>The servers to test against; a star marks the one used last.</source>
        <translation>The servers to test against; a star marks the one used last.</translation>
    </message>
    <message>
        <source>what the device tells about itself right now</source>
        <translation>what the device tells about itself right now</translation>
    </message>
    <message>
        <source>What the device tells about network, position and itself, and what it does not.
With --watch again after every change, until interrupted.</source>
        <translation>What the device tells about network, position and itself, and what it does not.
With --watch again after every change, until interrupted.</translation>
    </message>
    <message>
        <source>deliver the reports that wait</source>
        <translation>deliver the reports that wait</translation>
    </message>
    <message>
        <source>Offers the waiting reports to the service once. Exit status 0: none waits any
more, 1: the service did not take them all, 5: it cannot be reached.</source>
        <translation>Offers the waiting reports to the service once. Exit status 0: none waits any
more, 1: the service did not take them all, 5: it cannot be reached.</translation>
    </message>
    <message>
        <source>start a new series of tests</source>
        <translation>start a new series of tests</translation>
    </message>
    <message>
        <source>The tests from now on belong to a new series and are counted from 1.</source>
        <translation>The tests from now on belong to a new series and are counted from 1.</translation>
    </message>
    <message>
        <source>delete all stored tests and waiting reports</source>
        <translation>delete all stored tests and waiting reports</translation>
    </message>
    <message>
        <source>Deletes all stored tests and all waiting reports. Without --yes it only says
what it would delete.</source>
        <translation>Deletes all stored tests and all waiting reports. Without --yes it only says
what it would delete.</translation>
    </message>
    <message>
        <source>a server of the list, or any other (port 80)</source>
        <translation>a server of the list, or any other (port 80)</translation>
    </message>
    <message>
        <source>where you are; goes into the report</source>
        <translation>where you are; goes into the report</translation>
    </message>
    <message>
        <source>so many tests (1 to 100000)</source>
        <translation>so many tests (1 to 100000)</translation>
    </message>
    <message>
        <source>download and upload of a test end when they have moved N bytes together (from 100000; 500k, 10M, 2G), 0 for no limit; else what the settings page says</source>
        <translation>download and upload of a test end when they have moved N bytes together (from 100000; 500k, 10M, 2G), 0 for no limit; else what the settings page says</translation>
    </message>
    <message>
        <source>a number of bytes from %1 on, also such as 500k, 10M or 2G, or 0 for no limit</source>
        <translation>a number of bytes from %1 on, also such as 500k, 10M or 2G, or 0 for no limit</translation>
    </message>
    <message>
        <source>test even when it may be expensive</source>
        <translation>test even when it may be expensive</translation>
    </message>
    <message>
        <source>only IPv4</source>
        <translation>only IPv4</translation>
    </message>
    <message>
        <source>only IPv6</source>
        <translation>only IPv6</translation>
    </message>
    <message>
        <source>text, json or csv; of export csv, json, geojson or gpx</source>
        <translation>text, json or csv; of export csv, json, geojson or gpx</translation>
    </message>
    <message>
        <source>the same as --format json</source>
        <translation>the same as --format json</translation>
    </message>
    <message>
        <source>the same as --format csv</source>
        <translation>the same as --format csv</translation>
    </message>
    <message>
        <source>events as they happen, one JSON object a line</source>
        <translation>events as they happen, one JSON object a line</translation>
    </message>
    <message>
        <source>to standard error; auto: on a terminal</source>
        <translation>to standard error; auto: on a terminal</translation>
    </message>
    <message>
        <source>at most so many tests</source>
        <translation>at most so many tests</translation>
    </message>
    <message>
        <source>really delete</source>
        <translation>really delete</translation>
    </message>
    <message>
        <source>ask the device, replay a recorded one, or do without modem and position</source>
        <translation>ask the device, replay a recorded one, or do without modem and position</translation>
    </message>
    <message>
        <source>positions from a receiver, or from a recording at its pace, whatever the platform</source>
        <translation>positions from a receiver, or from a recording at its pace, whatever the platform</translation>
    </message>
    <message>
        <source>print again whenever something changes</source>
        <translation>print again whenever something changes</translation>
    </message>
    <message>
        <source>where the service lives (else VELOMETER_CONFIG, else velometer/deployment.conf)</source>
        <translation>where the service lives (else VELOMETER_CONFIG, else velometer/deployment.conf)</translation>
    </message>
    <message>
        <source>keep the results there</source>
        <translation>keep the results there</translation>
    </message>
    <message>
        <source>the diagnostic log, to standard error</source>
        <translation>the diagnostic log, to standard error</translation>
    </message>
    <message>
        <source>Exit status: 0 done, 1 the service refused or broke the test, 2 wrong usage,
3 the store cannot be opened or written, 4 roaming or over the data budget,
5 no network or no server, 129 hung up, 130 interrupted, 143 terminated.</source>
        <translation>Exit status: 0 done, 1 the service refused or broke the test, 2 wrong usage,
3 the store cannot be opened or written, 4 roaming or over the data budget,
5 no network or no server, 129 hung up, 130 interrupted, 143 terminated.</translation>
    </message>
    <message>
        <source>an ID such as 17, or SERIES/TEST such as 3/12</source>
        <translation>an ID such as 17, or SERIES/TEST such as 3/12</translation>
    </message>
    <message>
        <source>--format of %1</source>
        <translation>--format of %1</translation>
    </message>
    <message>
        <source>wait before the first test for a first position (0 to 600); else 5 where something may tell one</source>
        <translation>wait before the first test for a first position (0 to 600); else 5 where something may tell one</translation>
    </message>
    <message>
        <source>where the service shows your tests</source>
        <translation>where the service shows your tests</translation>
    </message>
    <message>
        <source>The address of the page on which the service shows your tests and, on a
terminal, the same as a QR code for a phone&apos;s camera. Whoever has the address
sees the tests.</source>
        <translation>The address of the page on which the service shows your tests and, on a
terminal, the same as a QR code for a phone&apos;s camera. Whoever has the address
sees the tests.</translation>
    </message>
    <message>
        <source>open it in the browser as well</source>
        <translation>open it in the browser as well</translation>
    </message>
    <message>
        <source>times the round trip of the idle line N times (3 to 200), for median, 95th percentile and jitter; its figures stay those of the first 3</source>
        <translation>times the round trip of the idle line N times (3 to 200), for median, 95th percentile and jitter; its figures stay those of the first 3</translation>
    </message>
    <message>
        <source>after the usual figures load the line for 5 s each way with CUBIC, which fills queues, and tell the delay meanwhile</source>
        <translation>after the usual figures load the line for 5 s each way with CUBIC, which fills queues, and tell the delay meanwhile</translation>
    </message>
    <message>
        <source>of the streams of both ends, where their kernels have it; else BBR, where they have that</source>
        <translation>of the streams of both ends, where their kernels have it; else BBR, where they have that</translation>
    </message>
    <message>
        <source>of tests from start to start (0 to 604800), of a track from point to point (1 to 3600, or in metres, such as 10m)</source>
        <translation>of tests from start to start (0 to 604800), of a track from point to point (1 to 3600, or in metres, such as 10m)</translation>
    </message>
    <message>
        <source>go on with a series, or a track, that was interrupted</source>
        <translation>go on with a series, or a track, that was interrupted</translation>
    </message>
    <message>
        <source>record where you are and what your network is there</source>
        <translation>record where you are and what your network is there</translation>
    </message>
    <message>
        <source>Records position, network, cell and signal on the way, without any traffic,
until interrupted; Ctrl+Z and fg pause it. What is stored after a crash goes on
with --resume. With --json or --csv every point is also printed.</source>
        <translation>Records position, network, cell and signal on the way, without any traffic,
until interrupted; Ctrl+Z and fg pause it. What is stored after a crash goes on
with --resume. With --json or --csv every point is also printed.</translation>
    </message>
    <message>
        <source>list the recorded tracks</source>
        <translation>list the recorded tracks</translation>
    </message>
    <message>
        <source>Lists the recorded tracks, the newest first; export --track ID writes one.</source>
        <translation>Lists the recorded tracks, the newest first; export --track ID writes one.</translation>
    </message>
    <message>
        <source>delete a recorded track</source>
        <translation>delete a recorded track</translation>
    </message>
    <message>
        <source>Deletes the track ID, as tracks lists it, from this device. Without --yes it only
says what it would delete.</source>
        <translation>Deletes the track ID, as tracks lists it, from this device. Without --yes it only
says what it would delete.</translation>
    </message>
    <message>
        <source>delete-track needs the ID of a track, as tracks lists it.</source>
        <translation>delete-track needs the ID of a track, as tracks lists it.</translation>
    </message>
    <message>
        <source>run a test on the way, from start to start: 300, or 500m</source>
        <translation>run a test on the way, from start to start: 300, or 500m</translation>
    </message>
    <message>
        <source>seconds such as 300 or metres such as 500m</source>
        <translation>seconds such as 300 or metres such as 500m</translation>
    </message>
    <message>
        <source>end after so long (1 to 604800)</source>
        <translation>end after so long (1 to 604800)</translation>
    </message>
    <message>
        <source>seconds from 1 to %1</source>
        <translation>seconds from 1 to %1</translation>
    </message>
    <message>
        <source>this track in place of the tests</source>
        <translation>this track in place of the tests</translation>
    </message>
    <message>
        <source>seconds from 1 to %1, or metres such as 10m</source>
        <translation>seconds from 1 to %1, or metres such as 10m</translation>
    </message>
    <message>
        <source>the ID of a track, as tracks lists it</source>
        <translation>the ID of a track, as tracks lists it</translation>
    </message>
    <message>
        <source>the track stays on this device; else the service shows it on your page</source>
        <translation>the track stays on this device; else the service shows it on your page</translation>
    </message>
    <message>
        <source>first bring those to the service that it does not have</source>
        <translation>first bring those to the service that it does not have</translation>
    </message>
</context>
<context>
    <name>DataBudget</name>
    <message>
        <source>download</source>
        <translation>download</translation>
    </message>
    <message>
        <source>upload</source>
        <translation>upload</translation>
    </message>
    <message>
        <source>ended early: %1</source>
        <translation>ended early: %1</translation>
    </message>
    <message>
        <source>at most %1; %2</source>
        <translation>at most %1; %2</translation>
    </message>
</context>
<context>
    <name>DelayLine</name>
    <message>
        <source>RTT 0 to %1 ms</source>
        <translation>RTT 0 to %1 ms</translation>
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
        <translation>RTT under load: %1</translation>
    </message>
</context>
<context>
    <name>LoadWords</name>
    <message>
        <source>Games suffer while something downloads: %1</source>
        <translation>Games suffer while something downloads: %1</translation>
    </message>
    <message>
        <source>Calls and games suffer while something downloads: %1</source>
        <translation>Calls and games suffer while something downloads: %1</translation>
    </message>
    <message>
        <source>Calls and games fail while something downloads: %1</source>
        <translation>Calls and games fail while something downloads: %1</translation>
    </message>
    <message>
        <source>Games suffer while something uploads: %1</source>
        <translation>Games suffer while something uploads: %1</translation>
    </message>
    <message>
        <source>Calls and games suffer while something uploads: %1</source>
        <translation>Calls and games suffer while something uploads: %1</translation>
    </message>
    <message>
        <source>Calls and games fail while something uploads: %1</source>
        <translation>Calls and games fail while something uploads: %1</translation>
    </message>
    <message>
        <source>Calls and games do not suffer from downloads and uploads.</source>
        <translation>Calls and games do not suffer from downloads and uploads.</translation>
    </message>
    <message>
        <source>%1 (95 % within %2)</source>
        <translation>%1 (95 % within %2)</translation>
    </message>
    <message>
        <source>lost: %1 %</source>
        <translation>lost: %1 %</translation>
    </message>
    <message>
        <source>at least %1</source>
        <translation>at least %1</translation>
    </message>
    <message>
        <source>jitter %1</source>
        <translation>jitter %1</translation>
    </message>
</context>
<context>
    <name>MapGround</name>
    <message>
        <source>(c) OpenStreetMap contributors</source>
        <translation>© OpenStreetMap contributors</translation>
    </message>
    <message>
        <source>Offline: outline only</source>
        <translation>Offline: outline only</translation>
    </message>
</context>
<context>
    <name>Options</name>
    <message>
        <source>There is no display; velometer-cli measures without one.</source>
        <translation>There is no display; velometer-cli measures without one.</translation>
    </message>
    <message>
        <source>velometer measures a mobile data connection: download, upload and round-trip time.</source>
        <translation>velometer measures a mobile data connection: download, upload and round-trip time.</translation>
    </message>
    <message>
        <source>deployment file: where the service and the test servers are</source>
        <translation>deployment file: where the service and the test servers are</translation>
    </message>
    <message>
        <source>where results are kept</source>
        <translation>where results are kept</translation>
    </message>
    <message>
        <source>asks the device, replays a recorded one, or does without modem and position</source>
        <translation>asks the device, replays a recorded one, or does without modem and position</translation>
    </message>
    <message>
        <source>positions from a receiver or a recording of one</source>
        <translation>positions from a receiver or a recording of one</translation>
    </message>
    <message>
        <source>handset (turned, full screen), phone (full screen) or desktop (a window); without it what fits the screen</source>
        <translation>handset (turned, full screen), phone (full screen) or desktop (a window); without it what fits the screen</translation>
    </message>
    <message>
        <source>handset, phone or desktop</source>
        <translation>handset, phone or desktop</translation>
    </message>
    <message>
        <source>German or English; without it as chosen on the settings page</source>
        <translation>German or English; without it as chosen on the settings page</translation>
    </message>
    <message>
        <source>writes the diagnostic log to standard error</source>
        <translation>writes the diagnostic log to standard error</translation>
    </message>
    <message>
        <source>velometer-cli does the same without a display.</source>
        <translation>velometer-cli does the same without a display.</translation>
    </message>
    <message>
        <source>how it looks; without it as chosen on the settings page</source>
        <translation>how it looks; without it as chosen on the settings page</translation>
    </message>
    <message>
        <source>auto, dark, light or given</source>
        <translation>auto, dark, light or given</translation>
    </message>
</context>
<context>
    <name>PlatformChoice</name>
    <message>
        <source>--platform takes system, scripted:FILE or none, not %1.</source>
        <translation>--platform takes system, scripted:FILE or none, not %1.</translation>
    </message>
</context>
<context>
    <name>PositionChoice</name>
    <message>
        <source>--position takes nmea:FILE, nmea:socket://HOST:PORT, gpsd or gpsd://HOST:PORT, not %1.</source>
        <translation>--position takes nmea:FILE, nmea:socket://HOST:PORT, gpsd or gpsd://HOST:PORT, not %1.</translation>
    </message>
</context>
<context>
    <name>RateClasses</name>
    <message>
        <source>below 1 Mbit/s</source>
        <translation>below 1 Mbit/s</translation>
    </message>
    <message>
        <source>1 to 5</source>
        <translation>1 to 5</translation>
    </message>
    <message>
        <source>5 to 20</source>
        <translation>5 to 20</translation>
    </message>
    <message>
        <source>20 to 100</source>
        <translation>20 to 100</translation>
    </message>
    <message>
        <source>100 and more</source>
        <translation>100 and more</translation>
    </message>
    <message>
        <source>na</source>
        <translation>na</translation>
    </message>
</context>
<context>
    <name>Syntax</name>
    <message>
        <source>%1 or %2</source>
        <translation>%1 or %2</translation>
    </message>
    <message>
        <source>%1 takes no value.</source>
        <translation>%1 takes no value.</translation>
    </message>
    <message>
        <source>%1 is no option of %2.</source>
        <translation>%1 is no option of %2.</translation>
    </message>
    <message>
        <source>There is no option %1; --help lists them.</source>
        <translation>There is no option %1; --help lists them.</translation>
    </message>
    <message>
        <source>%1 does not know what to do with %2.</source>
        <translation>%1 does not know what to do with %2.</translation>
    </message>
    <message>
        <source>There is no command %1; use %2.</source>
        <translation>There is no command %1; use %2.</translation>
    </message>
    <message>
        <source>%1 needs a value.</source>
        <translation>%1 needs a value.</translation>
    </message>
    <message>
        <source>COMMAND --help tells more about each.</source>
        <translation>COMMAND --help tells more about each.</translation>
    </message>
    <message>
        <source>Everywhere:</source>
        <translation>Everywhere:</translation>
    </message>
    <message>
        <source>Examples:</source>
        <translation>Examples:</translation>
    </message>
    <message>
        <source>the version; this page</source>
        <translation>the version; this page</translation>
    </message>
    <message>
        <source>what a shell may complete, as a table</source>
        <translation>what a shell may complete, as a table</translation>
    </message>
</context>
<context>
    <name>Takes</name>
    <message>
        <source>%1 takes %2, not %3.</source>
        <translation>%1 takes %2, not %3.</translation>
    </message>
    <message>
        <source>%1 and %2 contradict each other.</source>
        <translation>%1 and %2 contradict each other.</translation>
    </message>
    <message>
        <source>a whole number from %1 to %2</source>
        <translation>a whole number from %1 to %2</translation>
    </message>
</context>
<context>
    <name>TextFormat</name>
    <message>
        <source>signal %1 %</source>
        <translation>signal %1 %</translation>
    </message>
    <message>
        <source>cell %1</source>
        <translation>cell %1</translation>
    </message>
    <message>
        <source>roaming</source>
        <translation>roaming</translation>
    </message>
    <message>
        <source>within %1 m</source>
        <translation>within %1 m</translation>
    </message>
    <message>
        <source>altitude %1 m</source>
        <translation>altitude %1 m</translation>
    </message>
    <message>
        <source>%1 km/h</source>
        <translation>%1 km/h</translation>
    </message>
    <message>
        <source>delivered</source>
        <translation>delivered</translation>
    </message>
    <message>
        <source>waits in the queue</source>
        <translation>waits in the queue</translation>
    </message>
    <message>
        <source>none</source>
        <translation>none</translation>
    </message>
    <message>
        <source>earlier ones delivered: %1</source>
        <translation>earlier ones delivered: %1</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 to %2</translation>
    </message>
    <message>
        <source>not measured</source>
        <translation>not measured</translation>
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
        <translation>Round trip</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>Network</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Location</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>Report</translation>
    </message>
    <message>
        <source>All tests</source>
        <translation>All tests</translation>
    </message>
    <message>
        <source>Test %1 of series %2, %3</source>
        <translation>Test %1 of series %2, %3</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>Test</source>
        <translation>Test</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unknown</translation>
    </message>
    <message>
        <source>Data budget</source>
        <translation>Data budget</translation>
    </message>
    <message>
        <source>steady %1</source>
        <translation>steady %1</translation>
    </message>
    <message>
        <source>Delay idle</source>
        <translation>Delay idle</translation>
    </message>
    <message>
        <source>Delay in download</source>
        <translation>Delay in download</translation>
    </message>
    <message>
        <source>Delay in upload</source>
        <translation>Delay in upload</translation>
    </message>
    <message>
        <source>Delay in extra download</source>
        <translation>Delay in extra download</translation>
    </message>
    <message>
        <source>Delay in extra upload</source>
        <translation>Delay in extra upload</translation>
    </message>
    <message>
        <source>Under load</source>
        <translation>Under load</translation>
    </message>
    <message>
        <source>band %1</source>
        <translation>band %1</translation>
    </message>
</context>
<context>
    <name>TrackCommands</name>
    <message>
        <source>There is no track %1.</source>
        <translation>There is no track %1.</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>Duration</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Length</translation>
    </message>
    <message>
        <source>Points</source>
        <translation>Points</translation>
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
        <translation>About this program</translation>
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
        <translation>Copy</translation>
    </message>
    <message>
        <source>The browser should show this address now. If it does not, copy it:</source>
        <translation>The browser should show this address now. If it does not, copy it:</translation>
    </message>
    <message>
        <source>No browser could be opened. Copy this address into the browser of another device:</source>
        <translation>No browser could be opened. Copy this address into the browser of another device:</translation>
    </message>
    <message>
        <source>Your mail program should show a mail now. If it does not, write to this address:</source>
        <translation>Your mail program should show a mail now. If it does not, write to this address:</translation>
    </message>
    <message>
        <source>No mail program could be opened. Write to this address:</source>
        <translation>No mail program could be opened. Write to this address:</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Copied</translation>
    </message>
</context>
<context>
    <name>velometer::ChipBar</name>
    <message>
        <source>filtered by this</source>
        <translation>filtered by this</translation>
    </message>
</context>
<context>
    <name>velometer::ChoicePopup</name>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>current</source>
        <translation>current</translation>
    </message>
</context>
<context>
    <name>velometer::DetailsWindow</name>
    <message>
        <source>Please Wait ...</source>
        <translation>Please Wait ...</translation>
    </message>
    <message>
        <source>Resultat als E-Mail versenden</source>
        <translation>Send result by e-mail</translation>
    </message>
    <message>
        <source>Performance Data</source>
        <translation>Performance Data</translation>
    </message>
    <message>
        <source>Download Average</source>
        <translation>Download Average</translation>
    </message>
    <message>
        <source>over 5 seconds</source>
        <translation>over 5 seconds</translation>
    </message>
    <message>
        <source>Download Maximum</source>
        <translation>Download Maximum</translation>
    </message>
    <message>
        <source>fastest second</source>
        <translation>fastest second</translation>
    </message>
    <message>
        <source>Upload Average</source>
        <translation>Upload Average</translation>
    </message>
    <message>
        <source>Upload Maximum</source>
        <translation>Upload Maximum</translation>
    </message>
    <message>
        <source>RTT Average</source>
        <translation>RTT Average</translation>
    </message>
    <message>
        <source>over 3 &quot;TCP Connect Time&quot;</source>
        <translation>over 3 &quot;TCP Connect Time&quot;</translation>
    </message>
    <message>
        <source>RTT Minimum</source>
        <translation>RTT Minimum</translation>
    </message>
    <message>
        <source>min &quot;TCP Connect Time&quot;</source>
        <translation>min &quot;TCP Connect Time&quot;</translation>
    </message>
    <message>
        <source>Downloaded Bytes</source>
        <translation>Downloaded Bytes</translation>
    </message>
    <message>
        <source>whole test</source>
        <translation>whole test</translation>
    </message>
    <message>
        <source>Uploaded Bytes</source>
        <translation>Uploaded Bytes</translation>
    </message>
    <message>
        <source>Total transferred Bytes</source>
        <translation>Total transferred Bytes</translation>
    </message>
    <message>
        <source>Device Information</source>
        <translation>Device Information</translation>
    </message>
    <message>
        <source>Connectiontype(s)</source>
        <translation>Connectiontype(s)</translation>
    </message>
    <message>
        <source>during test cycle</source>
        <translation>during test cycle</translation>
    </message>
    <message>
        <source>NetworkCell</source>
        <translation>NetworkCell</translation>
    </message>
    <message>
        <source>at the end of the test</source>
        <translation>at the end of the test</translation>
    </message>
    <message>
        <source>GSM Signalstrength</source>
        <translation>GSM Signalstrength</translation>
    </message>
    <message>
        <source>External IP</source>
        <translation>External IP</translation>
    </message>
    <message>
        <source>Device IP</source>
        <translation>Device IP</translation>
    </message>
    <message>
        <source>Device Latitude</source>
        <translation>Device Latitude</translation>
    </message>
    <message>
        <source>Device Longitude</source>
        <translation>Device Longitude</translation>
    </message>
    <message>
        <source>Device Altitude</source>
        <translation>Device Altitude</translation>
    </message>
    <message>
        <source>Distance Traveled</source>
        <translation>Distance Traveled</translation>
    </message>
    <message>
        <source>during test, in meters</source>
        <translation>during test, in meters</translation>
    </message>
    <message>
        <source>Average Velocity</source>
        <translation>Average Velocity</translation>
    </message>
    <message>
        <source>Vert. Accuracy of GPS/Network</source>
        <translation>Vert. Accuracy of GPS/Network</translation>
    </message>
    <message>
        <source>Hor. Accuracy of GPS/Network</source>
        <translation>Hor. Accuracy of GPS/Network</translation>
    </message>
    <message>
        <source>Test Server Info</source>
        <translation>Test Server Info</translation>
    </message>
    <message>
        <source>Server Name</source>
        <translation>Server Name</translation>
    </message>
    <message>
        <source>Server Domain</source>
        <translation>Server Domain</translation>
    </message>
    <message>
        <source>Server IP</source>
        <translation>Server IP</translation>
    </message>
    <message>
        <source>Server Port</source>
        <translation>Server Port</translation>
    </message>
    <message>
        <source>Server Country</source>
        <translation>Server Country</translation>
    </message>
    <message>
        <source>Server State</source>
        <translation>Server State</translation>
    </message>
    <message>
        <source>Server City</source>
        <translation>Server City</translation>
    </message>
    <message>
        <source>Test Info</source>
        <translation>Test Info</translation>
    </message>
    <message>
        <source>Date of Test</source>
        <translation>Date of Test</translation>
    </message>
    <message>
        <source>Time of Test</source>
        <translation>Time of Test</translation>
    </message>
    <message>
        <source>Test Series ID</source>
        <translation>Test Series ID</translation>
    </message>
    <message>
        <source>Test ID</source>
        <translation>Test ID</translation>
    </message>
    <message>
        <source>Summary for the current measurement:</source>
        <translation>Summary for the current measurement:</translation>
    </message>
    <message>
        <source>Link to the measurements:</source>
        <translation>Link to the measurements:</translation>
    </message>
    <message>
        <source>orvak Velometer for Zenta (UserId:%1 Version:%2)</source>
        <translation>orvak Velometer for Zenta (UserId:%1 Version:%2)</translation>
    </message>
    <message>
        <source>Data Budget</source>
        <translation>Data Budget</translation>
    </message>
    <message>
        <source>Open on the service</source>
        <translation>Open on the service</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Details</translation>
    </message>
    <message>
        <source>Back to the results</source>
        <translation>Back to the results</translation>
    </message>
    <message>
        <source>Test above in the list</source>
        <translation>Test above in the list</translation>
    </message>
    <message>
        <source>Test below in the list</source>
        <translation>Test below in the list</translation>
    </message>
    <message>
        <source>Share</source>
        <translation>Share</translation>
    </message>
    <message>
        <source>Details of the test</source>
        <translation>Details of the test</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Log</translation>
    </message>
    <message>
        <source>Test %1</source>
        <translation>Test %1</translation>
    </message>
    <message>
        <source>This program has nothing in its log of the time of this test: it was started later.</source>
        <translation>This program has nothing in its log of the time of this test: it was started later.</translation>
    </message>
    <message>
        <source>from the end of its ramp-up on</source>
        <translation>from the end of its ramp-up on</translation>
    </message>
    <message>
        <source>median</source>
        <translation>median</translation>
    </message>
    <message>
        <source>95 % are shorter</source>
        <translation>95 % are shorter</translation>
    </message>
    <message>
        <source>lost, percent</source>
        <translation>lost, percent</translation>
    </message>
    <message>
        <source>congestion control of the load</source>
        <translation>congestion control of the load</translation>
    </message>
    <message>
        <source>Delay and Steady Rate</source>
        <translation>Delay and Steady Rate</translation>
    </message>
    <message>
        <source>Download Steady Rate</source>
        <translation>Download Steady Rate</translation>
    </message>
    <message>
        <source>Upload Steady Rate</source>
        <translation>Upload Steady Rate</translation>
    </message>
    <message>
        <source>Idle Delay</source>
        <translation>Idle Delay</translation>
    </message>
    <message>
        <source>Idle Jitter</source>
        <translation>Idle Jitter</translation>
    </message>
    <message>
        <source>Delay in Download</source>
        <translation>Delay in Download</translation>
    </message>
    <message>
        <source>Delay in Upload</source>
        <translation>Delay in Upload</translation>
    </message>
    <message>
        <source>Delay in Extra Download</source>
        <translation>Delay in Extra Download</translation>
    </message>
    <message>
        <source>Delay in Extra Upload</source>
        <translation>Delay in Extra Upload</translation>
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
        <translation>Network mode</translation>
    </message>
    <message>
        <source>Network status</source>
        <translation>Network status</translation>
    </message>
    <message>
        <source>Network name</source>
        <translation>Network name</translation>
    </message>
    <message>
        <source>Signal, %</source>
        <translation>Signal, %</translation>
    </message>
    <message>
        <source>WLAN signal, %</source>
        <translation>WLAN signal, %</translation>
    </message>
    <message>
        <source>Country code</source>
        <translation>Country code</translation>
    </message>
    <message>
        <source>Operator code</source>
        <translation>Operator code</translation>
    </message>
    <message>
        <source>Home country code</source>
        <translation>Home country code</translation>
    </message>
    <message>
        <source>Home operator code</source>
        <translation>Home operator code</translation>
    </message>
    <message>
        <source>Location area</source>
        <translation>Location area</translation>
    </message>
    <message>
        <source>Cell</source>
        <translation>Cell</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Kind of position</source>
        <translation>Kind of position</translation>
    </message>
    <message>
        <source>Latitude</source>
        <translation>Latitude</translation>
    </message>
    <message>
        <source>Longitude</source>
        <translation>Longitude</translation>
    </message>
    <message>
        <source>Altitude, m</source>
        <translation>Altitude, m</translation>
    </message>
    <message>
        <source>Horizontal accuracy, m</source>
        <translation>Horizontal accuracy, m</translation>
    </message>
    <message>
        <source>Vertical accuracy, m</source>
        <translation>Vertical accuracy, m</translation>
    </message>
    <message>
        <source>Speed, m/s</source>
        <translation>Speed, m/s</translation>
    </message>
    <message>
        <source>Direction, degrees</source>
        <translation>Direction, degrees</translation>
    </message>
    <message>
        <source>Satellites in use</source>
        <translation>Satellites in use</translation>
    </message>
    <message>
        <source>Satellites in view</source>
        <translation>Satellites in view</translation>
    </message>
    <message>
        <source>Manufacturer</source>
        <translation>Manufacturer</translation>
    </message>
    <message>
        <source>Product</source>
        <translation>Product</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Model</translation>
    </message>
    <message>
        <source>Platform</source>
        <translation>Platform</translation>
    </message>
    <message>
        <source>Device id</source>
        <translation>Device id</translation>
    </message>
    <message>
        <source>Subscriber id</source>
        <translation>Subscriber id</translation>
    </message>
    <message>
        <source>There is no source of satellites.</source>
        <translation>There is no source of satellites.</translation>
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
        <translation>WLAN name</translation>
    </message>
    <message>
        <source>Metered</source>
        <translation>Metered</translation>
    </message>
    <message>
        <source>Connectivity</source>
        <translation>Connectivity</translation>
    </message>
    <message>
        <source>Position source</source>
        <translation>Position source</translation>
    </message>
    <message>
        <source>Modem service</source>
        <translation>Modem service</translation>
    </message>
    <message>
        <source>There is no source of positions: install a location service (GeoClue), or name a receiver with --position.</source>
        <translation>There is no source of positions: install a location service (GeoClue), or name a receiver with --position.</translation>
    </message>
    <message>
        <source>The system&apos;s location service (%1) refuses to tell the position: allow it to Velometer in the system&apos;s settings.</source>
        <translation>The system&apos;s location service (%1) refuses to tell the position: allow it to Velometer in the system&apos;s settings.</translation>
    </message>
    <message>
        <source>The source of positions (%1) cannot be reached: check that it is there, that it runs and that you may read it.</source>
        <translation>The source of positions (%1) cannot be reached: check that it is there, that it runs and that you may read it.</translation>
    </message>
    <message>
        <source>The source of positions (%1) knows none so far: a receiver needs a view of the sky and up to some minutes.</source>
        <translation>The source of positions (%1) knows none so far: a receiver needs a view of the sky and up to some minutes.</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>There is no system bus, as in a container: modem and connection are unknown.</source>
        <translation>There is no system bus, as in a container: modem and connection are unknown.</translation>
    </message>
    <message>
        <source>Neither ModemManager nor oFono is running: start one of them if this device has a modem.</source>
        <translation>Neither ModemManager nor oFono is running: start one of them if this device has a modem.</translation>
    </message>
    <message>
        <source>The modem service does not answer: restart it.</source>
        <translation>The modem service does not answer: restart it.</translation>
    </message>
    <message>
        <source>The modem service knows of no modem: check that it is plugged in and switched on.</source>
        <translation>The modem service knows of no modem: check that it is plugged in and switched on.</translation>
    </message>
    <message>
        <source>NetworkManager is not running: whether the connection is metered is unknown.</source>
        <translation>NetworkManager is not running: whether the connection is metered is unknown.</translation>
    </message>
    <message>
        <source>NetworkManager does not answer: restart it.</source>
        <translation>NetworkManager does not answer: restart it.</translation>
    </message>
    <message>
        <source>NetworkManager has no active connection: connect the device, unless another program does.</source>
        <translation>NetworkManager has no active connection: connect the device, unless another program does.</translation>
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
        <translation>All connections</translation>
    </message>
    <message>
        <source>Mobile</source>
        <translation>Mobile</translation>
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
        <translation>Other and mixed</translation>
    </message>
    <message>
        <source>Connection</source>
        <translation>Connection</translation>
    </message>
    <message>
        <source>Period</source>
        <translation>Period</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>Place</translation>
    </message>
    <message>
        <source>All places</source>
        <translation>All places</translation>
    </message>
    <message>
        <source>Test Server</source>
        <translation>Test Server</translation>
    </message>
    <message>
        <source>All servers</source>
        <translation>All servers</translation>
    </message>
    <message>
        <source>Sort</source>
        <translation>Sort</translation>
    </message>
    <message>
        <source>24 hours</source>
        <translation>24 hours</translation>
    </message>
    <message>
        <source>7 days</source>
        <translation>7 days</translation>
    </message>
    <message>
        <source>30 days</source>
        <translation>30 days</translation>
    </message>
    <message>
        <source>12 months</source>
        <translation>12 months</translation>
    </message>
    <message>
        <source>Any time</source>
        <translation>Any time</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Fastest download</source>
        <translation>Fastest download</translation>
    </message>
    <message>
        <source>Fastest upload</source>
        <translation>Fastest upload</translation>
    </message>
    <message>
        <source>Shortest RTT</source>
        <translation>Shortest RTT</translation>
    </message>
    <message>
        <source>Newest first</source>
        <translation>Newest first</translation>
    </message>
</context>
<context>
    <name>velometer::GeoMapTab</name>
    <message>
        <source>No test has a position yet.</source>
        <translation>No test has a position yet.</translation>
    </message>
    <message>
        <source>Map of the tests</source>
        <translation>Map of the tests</translation>
    </message>
    <message numerus="yes">
        <source>%n position(s) on the map</source>
        <translation>
            <numerusform>%n position on the map</numerusform>
            <numerusform>%n positions on the map</numerusform>
        </translation>
    </message>
    <message>
        <source>ConnectionTyp:</source>
        <translation>ConnectionTyp: </translation>
    </message>
    <message>
        <source>DownloadSpeed:</source>
        <translation>DownloadSpeed: </translation>
    </message>
    <message>
        <source>UploadSpeed:</source>
        <translation>UploadSpeed: </translation>
    </message>
    <message>
        <source>Plus and minus zoom, the arrow keys move the map. N or Page Down opens the label of the next older test, P or Page Up that of the next newer one, Escape closes it.</source>
        <translation>Plus and minus zoom, the arrow keys move the map. N or Page Down opens the label of the next older test, P or Page Up that of the next newer one, Escape closes it.</translation>
    </message>
    <message>
        <source>na</source>
        <translation>n/a</translation>
    </message>
    <message>
        <source>Map</source>
        <translation>Map</translation>
    </message>
    <message>
        <source>other or mixed</source>
        <translation>other or mixed</translation>
    </message>
    <message>
        <source>no track yet</source>
        <translation>no track yet</translation>
    </message>
    <message>
        <source>from %1 dBm</source>
        <translation>from %1 dBm</translation>
    </message>
    <message>
        <source>below</source>
        <translation>below</translation>
    </message>
    <message>
        <source>signal not known</source>
        <translation>signal not known</translation>
    </message>
</context>
<context>
    <name>velometer::HistoryPlot</name>
    <message>
        <source>other connections</source>
        <translation>other connections</translation>
    </message>
    <message>
        <source>%1 from %2 to %3 %4</source>
        <translation>%1 from %2 to %3 %4</translation>
    </message>
</context>
<context>
    <name>velometer::HistoryTab</name>
    <message>
        <source>History</source>
        <translation>History</translation>
    </message>
    <message>
        <source>Back to the results</source>
        <translation>Back to the results</translation>
    </message>
    <message>
        <source>na</source>
        <translation>na</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 to %2</translation>
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
        <translation>No tests yet.</translation>
    </message>
    <message>
        <source>Start one on the test page.</source>
        <translation>Start one on the test page.</translation>
    </message>
    <message>
        <source>No test in this time.</source>
        <translation>No test in this time.</translation>
    </message>
    <message>
        <source>Choose a longer one, or all connections.</source>
        <translation>Choose a longer one, or all connections.</translation>
    </message>
    <message numerus="yes">
        <source>Medians of %n test(s), and what a tenth is below and a tenth above</source>
        <translation>
            <numerusform>Medians of %n test, and what a tenth is below and a tenth above</numerusform>
            <numerusform>Medians of %n tests, and what a tenth is below and a tenth above</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>velometer::LastTest</name>
    <message>
        <source>The series has ended after %1 of %2 tests.</source>
        <translation>The series has ended after %1 of %2 tests.</translation>
    </message>
    <message>
        <source>The test has ended.</source>
        <translation>The test has ended.</translation>
    </message>
</context>
<context>
    <name>velometer::LinksTab</name>
    <message>
        <source>Webseite mit Details zu 
meinen Resultaten öffnen</source>
        <translation>Open the web page with
details of my results</translation>
    </message>
    <message>
        <source>You get your own page with the first test.</source>
        <translation>You get your own page with the first test.</translation>
    </message>
    <message>
        <source>Feedback an 
orvak verfassen</source>
        <translation>Write feedback
to orvak</translation>
    </message>
    <message>
        <source>The page&apos;s address as a QR code</source>
        <translation>The page&apos;s address as a QR code</translation>
    </message>
    <message>
        <source>Point another device&apos;s camera at it to see your results there. Whoever has the address sees them.</source>
        <translation>Point another device&apos;s camera at it to see your results there. Whoever has the address sees them.</translation>
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
        <translation>Your current Location:</translation>
    </message>
    <message>
        <source>Indoor</source>
        <translation>Indoor</translation>
    </message>
    <message>
        <source>Outdoor</source>
        <translation>Outdoor</translation>
    </message>
    <message>
        <source>Train</source>
        <translation>Train</translation>
    </message>
    <message>
        <source>Car</source>
        <translation>Car</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Other</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
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
        <translation>Loading...</translation>
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
        <translation>Starting new Test Series with Id:</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Keys</translation>
    </message>
</context>
<context>
    <name>velometer::MapLegend</name>
    <message>
        <source>Colour: download</source>
        <translation>Colour: download</translation>
    </message>
    <message>
        <source>Colour: connection</source>
        <translation>Colour: connection</translation>
    </message>
    <message>
        <source>Colour: signal</source>
        <translation>Colour: signal</translation>
    </message>
    <message>
        <source>What the colours on the map tell</source>
        <translation>What the colours on the map tell</translation>
    </message>
    <message>
        <source>Tracks</source>
        <translation>Tracks</translation>
    </message>
    <message>
        <source>Record where you go and what your network is there, and what was recorded</source>
        <translation>Record where you go and what your network is there, and what was recorded</translation>
    </message>
</context>
<context>
    <name>velometer::MessagePopup</name>
    <message>
        <source>Please Wait ...</source>
        <translation>Please Wait ...</translation>
    </message>
</context>
<context>
    <name>velometer::NavigationBar</name>
    <message>
        <source>Test page</source>
        <translation>Test page</translation>
    </message>
    <message>
        <source>Results page</source>
        <translation>Results page</translation>
    </message>
    <message>
        <source>Settings page</source>
        <translation>Settings page</translation>
    </message>
    <message>
        <source>Links page</source>
        <translation>Links page</translation>
    </message>
    <message>
        <source>About page</source>
        <translation>About page</translation>
    </message>
    <message>
        <source>Test</source>
        <translation>Test</translation>
    </message>
    <message>
        <source>Resultate</source>
        <translation>Results</translation>
    </message>
    <message>
        <source>Einstellungen</source>
        <translation>Settings</translation>
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
        <translation>Number of measurements:</translation>
    </message>
    <message>
        <source>Test every:</source>
        <translation>Test every:</translation>
    </message>
    <message>
        <source>During:</source>
        <translation>During:</translation>
    </message>
    <message>
        <source>Serienmessung starten</source>
        <translation>Start series</translation>
    </message>
    <message>
        <source>Einzelmessung starten</source>
        <translation>Start single test</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>%1 tests in %2 h</source>
        <translation>%1 tests in %2 h</translation>
    </message>
    <message>
        <source>%1, about %2 at your last rate</source>
        <translation>%1, about %2 at your last rate</translation>
    </message>
</context>
<context>
    <name>velometer::PageHeader</name>
    <message>
        <source>Web site of the maker</source>
        <translation>Web site of the maker</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Close</translation>
    </message>
</context>
<context>
    <name>velometer::Program</name>
    <message>
        <source>Standard output cannot be written: %1.</source>
        <translation>Standard output cannot be written: %1.</translation>
    </message>
    <message>
        <source>The settings cannot be written.</source>
        <translation>The settings cannot be written.</translation>
    </message>
    <message>
        <source>No report waits.</source>
        <translation>No report waits.</translation>
    </message>
    <message>
        <source>Reports delivered: %1, still waiting: %2.</source>
        <translation>Reports delivered: %1, still waiting: %2.</translation>
    </message>
    <message>
        <source>Series %1</source>
        <translation>Series %1</translation>
    </message>
    <message>
        <source>The results in %1 cannot be opened or written.</source>
        <translation>The results in %1 cannot be opened or written.</translation>
    </message>
    <message>
        <source>There is no stored test %1.</source>
        <translation>There is no stored test %1.</translation>
    </message>
    <message>
        <source>This would delete %1 stored tests and %2 waiting reports in %3; say --yes to do it.</source>
        <translation>This would delete %1 stored tests and %2 waiting reports in %3; say --yes to do it.</translation>
    </message>
    <message>
        <source>Deleted %1 stored tests and %2 waiting reports.</source>
        <translation>Deleted %1 stored tests and %2 waiting reports.</translation>
    </message>
    <message>
        <source>No interrupted series waits to be continued.</source>
        <translation>No interrupted series waits to be continued.</translation>
    </message>
    <message>
        <source>The results of another version of this program are kept in %1.</source>
        <translation>The results of another version of this program are kept in %1.</translation>
    </message>
    <message>
        <source>You have no page yet: the service gives you one with the first test.</source>
        <translation>You have no page yet: the service gives you one with the first test.</translation>
    </message>
    <message>
        <source>Nothing opens addresses here (xdg-open is missing); open it in a browser by hand.</source>
        <translation>Nothing opens addresses here (xdg-open is missing); open it in a browser by hand.</translation>
    </message>
    <message>
        <source>This would delete track %1 with %2 points; say --yes to do it.</source>
        <translation>This would delete track %1 with %2 points; say --yes to do it.</translation>
    </message>
    <message>
        <source>Deleted track %1 with %2 points.</source>
        <translation>Deleted track %1 with %2 points.</translation>
    </message>
    <message>
        <source>Track %1 is being recorded; end it first.</source>
        <translation>Track %1 is being recorded; end it first.</translation>
    </message>
</context>
<context>
    <name>velometer::ResultActions</name>
    <message>
        <source>Export</source>
        <translation>Export</translation>
    </message>
    <message numerus="yes">
        <source>%n test(s) written to:</source>
        <translation>
            <numerusform>%n test written to:</numerusform>
            <numerusform>%n tests written to:</numerusform>
        </translation>
    </message>
    <message>
        <source>ErrorTitle</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>%1 cannot be written: %2</translation>
    </message>
    <message numerus="yes">
        <source>Export %n test(s) as</source>
        <translation>
            <numerusform>Export %n test as</numerusform>
            <numerusform>Export %n tests as</numerusform>
        </translation>
    </message>
    <message>
        <source>CSV, for spreadsheets</source>
        <translation>CSV, for spreadsheets</translation>
    </message>
    <message>
        <source>JSON, one test a line</source>
        <translation>JSON, one test a line</translation>
    </message>
    <message>
        <source>GeoJSON, for maps</source>
        <translation>GeoJSON, for maps</translation>
    </message>
    <message>
        <source>GPX, for navigation devices</source>
        <translation>GPX, for navigation devices</translation>
    </message>
    <message>
        <source>%1 of %2 tests</source>
        <translation>%1 of %2 tests</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message numerus="yes">
        <source>Share %n test(s)</source>
        <translation>
            <numerusform>Share %n test</numerusform>
            <numerusform>Share %n tests</numerusform>
        </translation>
    </message>
    <message>
        <source>Copy text</source>
        <translation>Copy text</translation>
    </message>
    <message>
        <source>Save JSON</source>
        <translation>Save JSON</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>Save picture</translation>
    </message>
    <message>
        <source>Share</source>
        <translation>Share</translation>
    </message>
    <message numerus="yes">
        <source>The text of %n test(s) is on the clipboard: paste it where you want it.</source>
        <translation>
            <numerusform>The text of %n test is on the clipboard: paste it where you want it.</numerusform>
            <numerusform>The text of %n tests is on the clipboard: paste it where you want it.</numerusform>
        </translation>
    </message>
    <message>
        <source>The picture is in:</source>
        <translation>The picture is in:</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>While a test or a series runs nothing can be deleted.</source>
        <translation>While a test or a series runs nothing can be deleted.</translation>
    </message>
    <message numerus="yes">
        <source>%n test(s) on this device will be deleted. What the service has of them stays there.</source>
        <translation>
            <numerusform>%n test on this device will be deleted. What the service has of them stays there.</numerusform>
            <numerusform>%n tests on this device will be deleted. What the service has of them stays there.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n report(s) of them wait to be sent; the service will never get them.</source>
        <translation>
            <numerusform>%n report of them waits to be sent; the service will never get it.</numerusform>
            <numerusform>%n reports of them wait to be sent; the service will never get them.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n test(s) deleted.</source>
        <translation>
            <numerusform>%n test deleted.</numerusform>
            <numerusform>%n tests deleted.</numerusform>
        </translation>
    </message>
    <message>
        <source>Nothing was deleted: the results in %1 cannot be written at the moment. Try again when no other program uses them.</source>
        <translation>Nothing was deleted: the results in %1 cannot be written at the moment. Try again when no other program uses them.</translation>
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
        <translation>Unknown day</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Today</translation>
    </message>
    <message>
        <source>Yesterday</source>
        <translation>Yesterday</translation>
    </message>
    <message>
        <source>%1 · Series %2</source>
        <translation>%1 · Series %2</translation>
    </message>
    <message>
        <source>Fastest download first</source>
        <translation>Fastest download first</translation>
    </message>
    <message>
        <source>Fastest upload first</source>
        <translation>Fastest upload first</translation>
    </message>
    <message>
        <source>Shortest RTT first</source>
        <translation>Shortest RTT first</translation>
    </message>
    <message numerus="yes">
        <source>%n test(s)</source>
        <translation>
            <numerusform>%n test</numerusform>
            <numerusform>%n tests</numerusform>
        </translation>
    </message>
    <message>
        <source>open</source>
        <translation>open</translation>
    </message>
    <message>
        <source>closed</source>
        <translation>closed</translation>
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
        <translation>Please Wait ...</translation>
    </message>
    <message>
        <source>No tests yet.</source>
        <translation>No tests yet.</translation>
    </message>
    <message>
        <source>Show locations on map</source>
        <translation>Show locations on map</translation>
    </message>
    <message>
        <source>Transferred Data %1 MB (%2 MB mobile)</source>
        <translation>Transferred Data %1 MB (%2 MB mobile)</translation>
    </message>
    <message>
        <source>Open on the service</source>
        <translation>Open on the service</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Results</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Search</translation>
    </message>
    <message>
        <source>Server, place, date, number</source>
        <translation>Server, place, date, number</translation>
    </message>
    <message>
        <source>Clear filter</source>
        <translation>Clear filter</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Select</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Done</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>Share</source>
        <translation>Share</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>History</source>
        <translation>History</translation>
    </message>
    <message>
        <source>Start one on the test page.</source>
        <translation>Start one on the test page.</translation>
    </message>
    <message>
        <source>No test is like this.</source>
        <translation>No test is like this.</translation>
    </message>
    <message>
        <source>Change or clear the filter.</source>
        <translation>Change or clear the filter.</translation>
    </message>
    <message>
        <source>%1 selected</source>
        <translation>%1 selected</translation>
    </message>
    <message numerus="yes">
        <source>%n test(s)</source>
        <translation>
            <numerusform>%n test</numerusform>
            <numerusform>%n tests</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 of %2 tests</source>
        <translation>%1 of %2 tests</translation>
    </message>
    <message>
        <source>All</source>
        <translation>All</translation>
    </message>
</context>
<context>
    <name>velometer::ServerSelection</name>
    <message>
        <source>There is no server &quot;%1&quot;; use HOST[:PORT] or one of: %2.</source>
        <translation>There is no server &quot;%1&quot;; use HOST[:PORT] or one of: %2.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no server address; write HOST[:PORT] with a port from 1 to 65535, an IPv6 address in brackets.</source>
        <translation>&quot;%1&quot; is no server address; write HOST[:PORT] with a port from 1 to 65535, an IPv6 address in brackets.</translation>
    </message>
</context>
<context>
    <name>velometer::SettingsTab</name>
    <message>
        <source>Start New Test Series</source>
        <translation>Start New Test Series</translation>
    </message>
    <message>
        <source>Clear Local Database</source>
        <translation>Clear Local Database</translation>
    </message>
    <message>
        <source>Choose Test Server</source>
        <translation>Choose Test Server</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>Language:</translation>
    </message>
    <message>
        <source>Advanced mode:</source>
        <translation>Advanced mode:</translation>
    </message>
    <message>
        <source>Advanced mode</source>
        <translation>Advanced mode</translation>
    </message>
    <message>
        <source>Data per test:</source>
        <translation>Data per test:</translation>
    </message>
    <message>
        <source>Data per test</source>
        <translation>Data per test</translation>
    </message>
    <message>
        <source>No limit</source>
        <translation>No limit</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>Look:</source>
        <translation>Look:</translation>
    </message>
    <message>
        <source>Look</source>
        <translation>Look</translation>
    </message>
    <message>
        <source>Larger text:</source>
        <translation>Larger text:</translation>
    </message>
    <message>
        <source>Larger text</source>
        <translation>Larger text</translation>
    </message>
    <message>
        <source>The start button then begins a series of tests.</source>
        <translation>The start button then begins a series of tests.</translation>
    </message>
    <message>
        <source>As the device</source>
        <translation>As the device</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dark</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Light</translation>
    </message>
    <message>
        <source>Classic</source>
        <translation>Classic</translation>
    </message>
    <message>
        <source>Not while a test or a series runs.</source>
        <translation>Not while a test or a series runs.</translation>
    </message>
    <message>
        <source>Delay under load:</source>
        <translation>Delay under load:</translation>
    </message>
    <message>
        <source>Each test then fills the line for 5 s more each way, as large transfers do, to tell what suffers. That takes about 70 % more data, within the limit.</source>
        <translation>Each test then fills the line for 5 s more each way, as large transfers do, to tell what suffers. That takes about 70 % more data, within the limit.</translation>
    </message>
    <message>
        <source>Delay under load</source>
        <translation>Delay under load</translation>
    </message>
</context>
<context>
    <name>velometer::ShareText</name>
    <message>
        <source>na</source>
        <translation>na</translation>
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
        <translation>start a test or series, end a series</translation>
    </message>
    <message>
        <source>stop the running test</source>
        <translation>stop the running test</translation>
    </message>
    <message>
        <source>test</source>
        <translation>test</translation>
    </message>
    <message>
        <source>results</source>
        <translation>results</translation>
    </message>
    <message>
        <source>settings</source>
        <translation>settings</translation>
    </message>
    <message>
        <source>links</source>
        <translation>links</translation>
    </message>
    <message>
        <source>about</source>
        <translation>about</translation>
    </message>
    <message>
        <source>search in the results</source>
        <translation>search in the results</translation>
    </message>
    <message>
        <source>these keys</source>
        <translation>these keys</translation>
    </message>
    <message>
        <source>end the program</source>
        <translation>end the program</translation>
    </message>
</context>
<context>
    <name>velometer::SleepInhibitor</name>
    <message>
        <source>A measurement runs.</source>
        <translation>A measurement runs.</translation>
    </message>
</context>
<context>
    <name>velometer::StartDialogue</name>
    <message>
        <source>Test Series</source>
        <translation>Test Series</translation>
    </message>
    <message>
        <source>A series was interrupted. Test %1 of %2 was next. Continue?</source>
        <translation>A series was interrupted. Test %1 of %2 was next. Continue?</translation>
    </message>
    <message>
        <source>Yes, continue</source>
        <translation>Yes, continue</translation>
    </message>
    <message>
        <source>No, forget it</source>
        <translation>No, forget it</translation>
    </message>
    <message>
        <source>Yes, start test</source>
        <translation>Yes, start test</translation>
    </message>
    <message>
        <source>No, don&apos;t test</source>
        <translation>No, don&apos;t test</translation>
    </message>
</context>
<context>
    <name>velometer::StoreDialogue</name>
    <message>
        <source>ErrorTitle</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>The results in %1 cannot be opened or written. Make room or correct the rights of this folder, then start again.</source>
        <translation>The results in %1 cannot be opened or written. Make room or correct the rights of this folder, then start again.</translation>
    </message>
    <message>
        <source>Please Wait</source>
        <translation>Please Wait</translation>
    </message>
    <message>
        <source>Database is beeing reseted...</source>
        <translation>Database is beeing reseted...</translation>
    </message>
    <message>
        <source>Clear Database</source>
        <translation>Clear Database</translation>
    </message>
    <message>
        <source>Database has been reseted</source>
        <translation>Database has been reseted</translation>
    </message>
    <message>
        <source>Nothing was deleted: the results in %1 cannot be written at the moment. Try again when no other program uses them.</source>
        <translation>Nothing was deleted: the results in %1 cannot be written at the moment. Try again when no other program uses them.</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>The results of another version of this program are kept in %1.</source>
        <translation>The results of another version of this program are kept in %1.</translation>
    </message>
    <message>
        <source>Stored tests that are deleted: %1. Reports that the service does not have yet: %2. The tests stay on the service. To keep a copy here, export them before: velometer-cli export --format csv</source>
        <translation>Stored tests that are deleted: %1. Reports that the service does not have yet: %2. The tests stay on the service. To keep a copy here, export them before: velometer-cli export --format csv</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>velometer::TestConsent</name>
    <message>
        <source>This connection is probably metered.</source>
        <translation>This connection is probably metered.</translation>
    </message>
    <message>
        <source>This connection is metered.</source>
        <translation>This connection is metered.</translation>
    </message>
    <message>
        <source>A test uses at most %1.</source>
        <translation>A test uses at most %1.</translation>
    </message>
    <message>
        <source>CostsQuestion</source>
        <translation>A test uses the connection fully for 14 seconds. On a fast network that is several hundred megabytes, which some contracts charge for. Start the test?</translation>
    </message>
    <message>
        <source>Costs</source>
        <translation>Costs</translation>
    </message>
    <message>
        <source>Roaming</source>
        <translation>Roaming</translation>
    </message>
    <message>
        <source>RoamingQuestion</source>
        <translation>Your device is roaming. A test moves as much data as is possible in 14 seconds and may be expensive. Start it anyway?</translation>
    </message>
    <message>
        <source>The connection is metered (guessed from its kind); a test may cost money.</source>
        <translation>The connection is metered (guessed from its kind); a test may cost money.</translation>
    </message>
    <message>
        <source>The connection is metered; a test may cost money.</source>
        <translation>The connection is metered; a test may cost money.</translation>
    </message>
    <message>
        <source>The device is roaming; a test may be expensive. --allow-roaming tests all the same.</source>
        <translation>The device is roaming; a test may be expensive. --allow-roaming tests all the same.</translation>
    </message>
</context>
<context>
    <name>velometer::TestController</name>
    <message>
        <source>testphase_init</source>
        <translation>Preparing the test</translation>
    </message>
    <message>
        <source>noConnectionText</source>
        <translation>There is no connection to the network.</translation>
    </message>
    <message>
        <source>noConnectionToServer</source>
        <translation>The test server cannot be reached.</translation>
    </message>
    <message>
        <source>errorInit</source>
        <translation>The test server did not accept the test.</translation>
    </message>
    <message>
        <source>testphase_download</source>
        <translation>Measuring the download</translation>
    </message>
    <message>
        <source>na</source>
        <translation>n/a</translation>
    </message>
    <message>
        <source>testphase_wait</source>
        <translation>Please wait</translation>
    </message>
    <message>
        <source>testphase_upload</source>
        <translation>Measuring the upload</translation>
    </message>
    <message>
        <source>testphase_rtt</source>
        <translation>Measuring the RTT</translation>
    </message>
    <message>
        <source>testphase_sendresults</source>
        <translation>Sending the results</translation>
    </message>
    <message>
        <source>DataTransferred</source>
        <translation>Data transferred </translation>
    </message>
    <message>
        <source>positionunknown</source>
        <translation>Position unknown</translation>
    </message>
    <message>
        <source>positionknown</source>
        <translation>Accuracy %1 m, altitude %2 m</translation>
    </message>
    <message>
        <source>positionabout</source>
        <translation>Position roughly known</translation>
    </message>
    <message>
        <source>Another program holds the results locked; waiting for them.</source>
        <translation>Another program holds the results locked; waiting for them.</translation>
    </message>
    <message>
        <source>testphase_delays</source>
        <translation>Measuring the delay</translation>
    </message>
    <message>
        <source>testphase_room</source>
        <translation>The service is busy. Next try in %1 s</translation>
    </message>
</context>
<context>
    <name>velometer::TestDetails</name>
    <message>
        <source>n/a</source>
        <translation>n/a</translation>
    </message>
</context>
<context>
    <name>velometer::TestDisplay</name>
    <message>
        <source>aborting...</source>
        <translation>aborting...</translation>
    </message>
    <message>
        <source>Abort Test</source>
        <translation>Abort Test</translation>
    </message>
    <message>
        <source>Start Test</source>
        <translation>Start Test</translation>
    </message>
    <message>
        <source>Next measurement in %1:%2 minutes.</source>
        <translation>Next measurement in %1:%2 minutes.</translation>
    </message>
    <message>
        <source>Test Series</source>
        <translation>Test Series</translation>
    </message>
    <message>
        <source>The interrupted series is over: its tests from %1 to %2 were missed.</source>
        <translation>The interrupted series is over: its tests from %1 to %2 were missed.</translation>
    </message>
    <message>
        <source>Tests from %1 to %2 of %3 were missed.</source>
        <translation>Tests from %1 to %2 of %3 were missed.</translation>
    </message>
    <message>
        <source>ErrorTitle</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>The test could not be stored in %1. Make room or correct the rights of this folder.</source>
        <translation>The test could not be stored in %1. Make room or correct the rights of this folder.</translation>
    </message>
    <message>
        <source>The data budget ended the test early.</source>
        <translation>The data budget ended the test early.</translation>
    </message>
    <message>
        <source>The report waits and goes out with the next test.</source>
        <translation>The report waits and goes out with the next test.</translation>
    </message>
    <message>
        <source>na</source>
        <translation>na</translation>
    </message>
    <message>
        <source>Another program holds the results; this test joins them later.</source>
        <translation>Another program holds the results; this test joins them later.</translation>
    </message>
    <message>
        <source>On the service everything of this user was deleted; the next test begins with a new user.</source>
        <translation>On the service everything of this user was deleted; the next test begins with a new user.</translation>
    </message>
    <message>
        <source>Last test, %1
%2 / %3 kBit/s, %4</source>
        <translation>Last test, %1
%2 / %3 kBit/s, %4</translation>
    </message>
    <message>
        <source>kBit/s now</source>
        <translation>kBit/s now</translation>
    </message>
    <message>
        <source>Waiting for a network connection.</source>
        <translation>Waiting for a network connection.</translation>
    </message>
    <message>
        <source>Waiting for an answer of the service at %1.</source>
        <translation>Waiting for an answer of the service at %1.</translation>
    </message>
    <message>
        <source>Waiting for an answer of the test server %1.</source>
        <translation>Waiting for an answer of the test server %1.</translation>
    </message>
    <message>
        <source>Stopped.</source>
        <translation>Stopped.</translation>
    </message>
    <message>
        <source>ms now</source>
        <translation>ms now</translation>
    </message>
    <message>
        <source>The series has ended after %1 of %2 tests.</source>
        <translation>The series has ended after %1 of %2 tests.</translation>
    </message>
    <message>
        <source>The test has ended.</source>
        <translation>The test has ended.</translation>
    </message>
</context>
<context>
    <name>velometer::TestResultWidget</name>
    <message>
        <source>na</source>
        <translation>na</translation>
    </message>
    <message>
        <source>%1, %2 %3, %4, %5, %6, download %7, upload %8, RTT %9</source>
        <translation>%1, %2 %3, %4, %5, %6, download %7, upload %8, RTT %9</translation>
    </message>
    <message>
        <source>selected</source>
        <translation>selected</translation>
    </message>
    <message>
        <source>not selected</source>
        <translation>not selected</translation>
    </message>
</context>
<context>
    <name>velometer::TestRunner</name>
    <message>
        <source>download</source>
        <translation>download</translation>
    </message>
    <message>
        <source>upload</source>
        <translation>upload</translation>
    </message>
    <message>
        <source>round-trip time</source>
        <translation>round-trip time</translation>
    </message>
    <message>
        <source>The reports in %1 cannot be written.</source>
        <translation>The reports in %1 cannot be written.</translation>
    </message>
    <message>
        <source>The service did not take every report.</source>
        <translation>The service did not take every report.</translation>
    </message>
    <message>
        <source>The service cannot be reached.</source>
        <translation>The service cannot be reached.</translation>
    </message>
    <message>
        <source>The test was stopped.</source>
        <translation>The test was stopped.</translation>
    </message>
    <message>
        <source>The test could not be stored in %1.</source>
        <translation>The test could not be stored in %1.</translation>
    </message>
    <message>
        <source>The test is incomplete; missing or cut short: %1.</source>
        <translation>The test is incomplete; missing or cut short: %1.</translation>
    </message>
    <message>
        <source>The test failed.</source>
        <translation>The test failed.</translation>
    </message>
    <message>
        <source>The report waits in the queue and goes out with the next test.</source>
        <translation>The report waits in the queue and goes out with the next test.</translation>
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
        <translation>Round-trip time: %1</translation>
    </message>
    <message>
        <source>The test reached its data budget (%1) and is stored as far as it came; --max-bytes gives it more, --max-bytes 0 lifts the limit.</source>
        <translation>The test reached its data budget (%1) and is stored as far as it came; --max-bytes gives it more, --max-bytes 0 lifts the limit.</translation>
    </message>
    <message>
        <source>The series that was interrupted is over: its tests from %1 to %2 were missed.</source>
        <translation>The series that was interrupted is over: its tests from %1 to %2 were missed.</translation>
    </message>
    <message>
        <source>A series was interrupted: test %1 of %2 is next. --resume continues it; a new series takes its place.</source>
        <translation>A series was interrupted: test %1 of %2 is next. --resume continues it; a new series takes its place.</translation>
    </message>
    <message>
        <source>Test %1 of %2 was missed.</source>
        <translation>Test %1 of %2 was missed.</translation>
    </message>
    <message>
        <source>Tests %1 to %2 of %3 were missed.</source>
        <translation>Tests %1 to %2 of %3 were missed.</translation>
    </message>
    <message>
        <source>Waiting for a position, at most %1 s.</source>
        <translation>Waiting for a position, at most %1 s.</translation>
    </message>
    <message>
        <source>Another program holds %1; the test joins it with the next one.</source>
        <translation>Another program holds %1; the test joins it with the next one.</translation>
    </message>
    <message>
        <source>On the service everything of this user was deleted, and it takes no more tests of his; the next test begins with a new user.</source>
        <translation>On the service everything of this user was deleted, and it takes no more tests of his; the next test begins with a new user.</translation>
    </message>
</context>
<context>
    <name>velometer::TestServerTable</name>
    <message>
        <source>Zürich</source>
        <translation>Zurich</translation>
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
        <translation>IP-Plus Germany</translation>
    </message>
    <message>
        <source>Frankfurt</source>
        <translation>Frankfurt</translation>
    </message>
    <message>
        <source>IP-Plus Italy</source>
        <translation>IP-Plus Italy</translation>
    </message>
    <message>
        <source>Mailand</source>
        <translation>Milan</translation>
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
        <translation>Location:</translation>
    </message>
    <message>
        <source>Test Server:</source>
        <translation>Test Server:</translation>
    </message>
    <message>
        <source>Series ID / Test ID:</source>
        <translation>Series ID / Test ID:</translation>
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
        <translation>Progress of the measurement</translation>
    </message>
    <message>
        <source>Start Test</source>
        <translation>Start Test</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>%1 (fixed for this test)</source>
        <translation>%1 (fixed for this test)</translation>
    </message>
</context>
<context>
    <name>velometer::ThroughputPlot</name>
    <message>
        <source>Throughput over time</source>
        <translation>Throughput over time</translation>
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
        <translation>%1 on average %2, at most %3 %4</translation>
    </message>
</context>
<context>
    <name>velometer::TrackControl</name>
    <message>
        <source>Another program holds the results; points wait for it.</source>
        <translation>Another program holds the results; points wait for it.</translation>
    </message>
    <message>
        <source>The service shows the track on your page.</source>
        <translation>The service shows the track on your page.</translation>
    </message>
    <message>
        <source>Tracks</source>
        <translation>Tracks</translation>
    </message>
    <message>
        <source>Another program records a track here; end it first.</source>
        <translation>Another program records a track here; end it first.</translation>
    </message>
    <message>
        <source>ErrorTitle</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>The results in %1 cannot be written at the moment. Try again when no other program uses them.</source>
        <translation>The results in %1 cannot be written at the moment. Try again when no other program uses them.</translation>
    </message>
    <message>
        <source>The end of the track could not be stored; the last track can be gone on with.</source>
        <translation>The end of the track could not be stored; the last track can be gone on with.</translation>
    </message>
    <message>
        <source>A test on the way was left out: it would have needed your answer.</source>
        <translation>A test on the way was left out: it would have needed your answer.</translation>
    </message>
    <message>
        <source>Show on the map</source>
        <translation>Show on the map</translation>
    </message>
    <message>
        <source>Save CSV, for spreadsheets</source>
        <translation>Save CSV, for spreadsheets</translation>
    </message>
    <message>
        <source>Save GeoJSON, for maps</source>
        <translation>Save GeoJSON, for maps</translation>
    </message>
    <message>
        <source>Save GPX, for navigation devices</source>
        <translation>Save GPX, for navigation devices</translation>
    </message>
    <message>
        <source>Delete …</source>
        <translation>Delete …</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>The track is in:</source>
        <translation>The track is in:</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>%1 cannot be written: %2</translation>
    </message>
    <message>
        <source>Delete this track from the device? What the service has of it stays there.</source>
        <translation>Delete this track from the device? What the service has of it stays there.</translation>
    </message>
    <message>
        <source>Delete: %1</source>
        <translation>Delete: %1</translation>
    </message>
</context>
<context>
    <name>velometer::TrackRunner</name>
    <message>
        <source>Another program holds the results; points wait for it.</source>
        <translation>Another program holds the results; points wait for it.</translation>
    </message>
    <message>
        <source>No interrupted track waits to be continued.</source>
        <translation>No interrupted track waits to be continued.</translation>
    </message>
    <message>
        <source>A track was interrupted and ends where it stood; --resume would have continued it.</source>
        <translation>A track was interrupted and ends where it stood; --resume would have continued it.</translation>
    </message>
    <message>
        <source>Another program records a track here; end it first.</source>
        <translation>Another program records a track here; end it first.</translation>
    </message>
    <message>
        <source>The results in %1 cannot be opened or written.</source>
        <translation>The results in %1 cannot be opened or written.</translation>
    </message>
    <message>
        <source>no position</source>
        <translation>no position</translation>
    </message>
    <message>
        <source>The end of the track could not be stored in %1; --resume goes on with it.</source>
        <translation>The end of the track could not be stored in %1; --resume goes on with it.</translation>
    </message>
    <message>
        <source>Track %1: %2 in %3, %4 points, %5 tests</source>
        <translation>Track %1: %2 in %3, %4 points, %5 tests</translation>
    </message>
    <message>
        <source>tracks --send tries it again.</source>
        <translation>tracks --send tries it again.</translation>
    </message>
    <message>
        <source>Bringing the track to the service</source>
        <translation>Bringing the track to the service</translation>
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
        <translation>Back to the map</translation>
    </message>
    <message>
        <source>End the track</source>
        <translation>End the track</translation>
    </message>
    <message>
        <source>each %1</source>
        <translation>each %1</translation>
    </message>
    <message>
        <source>each %1 s</source>
        <translation>each %1 s</translation>
    </message>
    <message>
        <source>each %1 min</source>
        <translation>each %1 min</translation>
    </message>
    <message>
        <source>none</source>
        <translation>none</translation>
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
            <numerusform>%n point</numerusform>
            <numerusform>%n points</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n test(s)</source>
        <translation>
            <numerusform>%n test</numerusform>
            <numerusform>%n tests</numerusform>
        </translation>
    </message>
    <message>
        <source>Go on with the last track</source>
        <translation>Go on with the last track</translation>
    </message>
    <message>
        <source>Record a track</source>
        <translation>Record a track</translation>
    </message>
    <message>
        <source>Go on</source>
        <translation>Go on</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>It goes on while you use other pages and other programs.</source>
        <translation>It goes on while you use other pages and other programs.</translation>
    </message>
    <message>
        <source>Records where you are and what your network is there, without any traffic.</source>
        <translation>Records where you are and what your network is there, without any traffic.</translation>
    </message>
    <message>
        <source>A track was interrupted.</source>
        <translation>A track was interrupted.</translation>
    </message>
    <message>
        <source>Nothing is being recorded.</source>
        <translation>Nothing is being recorded.</translation>
    </message>
    <message>
        <source>paused</source>
        <translation>paused</translation>
    </message>
    <message>
        <source>cell %1</source>
        <translation>cell %1</translation>
    </message>
    <message>
        <source>no position</source>
        <translation>no position</translation>
    </message>
    <message>
        <source>Cannot be changed while a track is recorded.</source>
        <translation>Cannot be changed while a track is recorded.</translation>
    </message>
    <message>
        <source>Point: %1</source>
        <translation>Point: %1</translation>
    </message>
    <message>
        <source>Tests: %1</source>
        <translation>Tests: %1</translation>
    </message>
    <message>
        <source>A point of the track</source>
        <translation>A point of the track</translation>
    </message>
    <message>
        <source>Tests on the way</source>
        <translation>Tests on the way</translation>
    </message>
</context>
<context>
    <name>velometer::TrackUpload</name>
    <message>
        <source>The service does not know you yet: run one test, then send the track.</source>
        <translation>The service does not know you yet: run one test, then send the track.</translation>
    </message>
    <message>
        <source>The service does not keep the track.</source>
        <translation>The service does not keep the track.</translation>
    </message>
    <message>
        <source>The service cannot be reached; the track waits for it.</source>
        <translation>The service cannot be reached; the track waits for it.</translation>
    </message>
    <message>
        <source>The service did not take the track (%1).</source>
        <translation>The service did not take the track (%1).</translation>
    </message>
    <message>
        <source>The service did not take the track: %1</source>
        <translation>The service did not take the track: %1</translation>
    </message>
    <message>
        <source>The results in %1 cannot be opened or written.</source>
        <translation>The results in %1 cannot be opened or written.</translation>
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
        <translation>Other</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unknown</translation>
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
        <translation>Unknown</translation>
    </message>
    <message>
        <source>LocationUnknownShort</source>
        <translation>Unknown</translation>
    </message>
    <message>
        <source>LocationIndoor</source>
        <translation>Indoor</translation>
    </message>
    <message>
        <source>LocationIndoorShort</source>
        <translation>Indoor</translation>
    </message>
    <message>
        <source>LocationOutdoor</source>
        <translation>Outdoor</translation>
    </message>
    <message>
        <source>LocationOutdoorShort</source>
        <translation>Outdoor</translation>
    </message>
    <message>
        <source>LocationTrain</source>
        <translation>Train</translation>
    </message>
    <message>
        <source>LocationTrainShort</source>
        <translation>Train</translation>
    </message>
    <message>
        <source>LocationCar</source>
        <translation>Car</translation>
    </message>
    <message>
        <source>LocationCarShort</source>
        <translation>Car</translation>
    </message>
    <message>
        <source>LocationOther</source>
        <translation>Other</translation>
    </message>
    <message>
        <source>LocationOtherShort</source>
        <translation>Other</translation>
    </message>
</context>
</TS>
