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
        <source>Help command not configured for %1</source>
        <translation>Ohjekomentoa ei ole määritetty: %1</translation>
    </message>
    <message>
        <source>Help command could not be started for %1</source>
        <translation>Ohjekomentoa ei voitu käynnistää: %1</translation>
    </message>
    <message>
        <source>Requested data not available:</source>
        <translation>Pyydettyä aineistoa ei ole saatavilla:</translation>
    </message>
    <message>
        <source>Visualizing 3D data failed:</source>
        <translation>3D-aineiston visualisointi epäonnistui:</translation>
    </message>
    <message>
        <source>Visualizing 2D data failed:</source>
        <translation>2D-aineiston visualisointi epäonnistui:</translation>
    </message>
    <message>
        <source>Unknown rendering type, 3D product not drawn: </source>
        <translation>Tuntematon piirtotapa, 3D-tuotetta ei piirretä: </translation>
    </message>
    <message>
        <source>- Unit settings changed</source>
        <translation>- Yksikköasetukset muuttuivat</translation>
    </message>
    <message>
        <source>- Data resolution changed</source>
        <translation>- Aineiston erotuskyky muuttui</translation>
    </message>
    <message>
        <source>- Data smoothing changed</source>
        <translation>- Aineiston tasoitus muuttui</translation>
    </message>
    <message>
        <source>- Vertical scaling changed</source>
        <translation>- Pystymittakaava muuttui</translation>
    </message>
    <message>
        <source>- Geo data path changed</source>
        <translation>- Maastoaineiston hakemisto muuttui</translation>
    </message>
    <message>
        <source>- 3d data path changed</source>
        <translation>- 3D-aineiston hakemisto muuttui</translation>
    </message>
    <message>
        <source>- 2d data path changed</source>
        <translation>- 2D-aineiston hakemisto muuttui</translation>
    </message>
    <message>
        <source>km</source>
        <translation>km</translation>
    </message>
    <message>
        <source>NM</source>
        <translation>mpk</translation>
    </message>
    <message>
        <source>m</source>
        <translation>m</translation>
    </message>
    <message>
        <source>ft</source>
        <translation>ft</translation>
    </message>
    <message>
        <source>C</source>
        <comment>locale in which dates and times are written</comment>
        <translation>fi_FI</translation>
    </message>
    <message>
        <source>Background settings not writable.</source>
        <translation>Taustakuvien asetuksia ei voi tallentaa.</translation>
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
    <name>Datalib</name>
    <message>
        <source>Requested data not available.</source>
        <translation>Pyydettyä aineistoa ei ole saatavilla.</translation>
    </message>
    <message>
        <source>(No data loaded)</source>
        <translation>(Aineistoa ei ole ladattu)</translation>
    </message>
    <message>
        <source>Data not available</source>
        <translation>Aineistoa ei ole saatavilla</translation>
    </message>
    <message>
        <source> ASL</source>
        <translation> mpy</translation>
    </message>
    <message>
        <source>The newest data of site %1 lies in the future: the radar&apos;s or this computer&apos;s clock is wrong.</source>
        <translation>Aseman %1 uusin aineisto on tulevaisuudesta: tutkan tai tämän tietokoneen kello on väärässä.</translation>
    </message>
    <message>
        <source>- Converting terrain block: </source>
        <translation>- Muunnetaan maastoruutua: </translation>
    </message>
    <message>
        <source>Converting terrain data, please wait...</source>
        <translation>Muunnetaan maastoaineistoa, odota hetki...</translation>
    </message>
    <message>
        <source>%1  terrain files converted!</source>
        <translation>%1  maastotiedostoa muunnettu!</translation>
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
        <source>&amp;Cursor</source>
        <translation>&amp;Kohdistin</translation>
    </message>
    <message>
        <source>3D cursor (F3)</source>
        <translation>3D-kohdistin (F3)</translation>
    </message>
    <message>
        <source>&amp;Night mode</source>
        <translation>&amp;Yötila</translation>
    </message>
    <message>
        <source>Night mode (F9)</source>
        <translation>Yötila (F9)</translation>
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
    <name>TORVColormap</name>
    <message>
        <source>Colour scale %1 can&apos;t be used, built-in colours are shown: %2</source>
        <translation>Väriasteikkoa %1 ei voi käyttää, tilalla ovat sisäiset värit: %2</translation>
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
<context>
    <name>VTK</name>
    <message>
        <source>zoom</source>
        <translation>zoomaus</translation>
    </message>
    <message>
        <source>Heading</source>
        <translation>Suunta</translation>
    </message>
    <message>
        <source>Home: </source>
        <translation>Koti: </translation>
    </message>
</context>
</TS>
