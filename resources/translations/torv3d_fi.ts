<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fi" sourcelanguage="en">
<context>
    <name>App</name>
    <message>
        <source>There is no display to draw on: neither DISPLAY nor WAYLAND_DISPLAY is set.</source>
        <translation>Kuvalle ei ole näyttöä: muuttujia DISPLAY ja WAYLAND_DISPLAY ei ole asetettu.</translation>
    </message>
    <message>
        <source>Active username is %1</source>
        <translation>Aktiivinen käyttäjätunnus on %1</translation>
    </message>
    <message>
        <source>(No data available)</source>
        <translation>(Ei aineistoa)</translation>
    </message>
    <message>
        <source>Please, set up your data paths.</source>
        <translation>Määritä aineistohakemistot asetuksissa.</translation>
    </message>
    <message>
        <source>Requested data not available:</source>
        <translation>Pyydettyä aineistoa ei ole saatavilla:</translation>
    </message>
    <message>
        <source>Visualizing 3D data failed:</source>
        <translation>3D-aineiston visualisointi epäonnistui:</translation>
    </message>
</context>
<context>
    <name>Config</name>
    <message>
        <source>Default</source>
        <translation>Oletus</translation>
    </message>
    <message>
        <source>Settings may be lost, the file can&apos;t be read or written: %1</source>
        <translation>Asetukset voivat kadota, tiedostoa ei voi lukea tai kirjoittaa: %1</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Scene</source>
        <translation>Näkymä</translation>
    </message>
    <message>
        <source>Main tool bar</source>
        <translation>Työkalupalkki</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Tapahtumat</translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation>&amp;Lopeta</translation>
    </message>
    <message>
        <source>Exit (Ctrl+Q)</source>
        <translation>Lopeta (Ctrl+Q)</translation>
    </message>
    <message>
        <source>Halmera TORV 3DView</source>
        <translation>Halmera TORV 3DView</translation>
    </message>
</context>
<context>
    <name>TORVDataType</name>
    <message>
        <source>Not available</source>
        <translation>Ei saatavilla</translation>
    </message>
    <message>
        <source>Reflectivity</source>
        <translation>Heijastavuus</translation>
    </message>
    <message>
        <source>Spectrum width</source>
        <translation>Spektrin leveys</translation>
    </message>
    <message>
        <source>Rainfall rate</source>
        <translation>Sateen intensiteetti</translation>
    </message>
    <message>
        <source>Radial velocity</source>
        <translation>Säteisnopeus</translation>
    </message>
</context>
<context>
    <name>TORVLog</name>
    <message>
        <source>Welcome to TORV 3DView</source>
        <translation>Tervetuloa käyttämään TORV 3DView -ohjelmaa</translation>
    </message>
</context>
</TS>
