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
    <message>
        <source>Shutting down...</source>
        <translation>Suljetaan...</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Edistyminen</translation>
    </message>
    <message>
        <source>3D data disk</source>
        <translation>3D-aineiston levy</translation>
    </message>
    <message>
        <source>Animation stopped.</source>
        <translation>Animaatio pysäytetty.</translation>
    </message>
    <message>
        <source>Not enough frames to animate.</source>
        <translation>Animaatioon ei ole tarpeeksi kuvia.</translation>
    </message>
    <message>
        <source>Animating data set..</source>
        <translation>Animoidaan aineistoa..</translation>
    </message>
    <message>
        <source>Frame:</source>
        <translation>Kuva:</translation>
    </message>
    <message>
        <source>Animation time span changed:</source>
        <translation>Animaation aikajakso muutettu:</translation>
    </message>
    <message>
        <source>Animation interval changed:</source>
        <translation>Animaation kuvaväli muutettu:</translation>
    </message>
    <message>
        <source>Animation speed changed:</source>
        <translation>Animaation nopeus muutettu:</translation>
    </message>
    <message>
        <source>Animation loop mode: </source>
        <translation>Animaation toisto: </translation>
    </message>
    <message>
        <source>Changed to live mode.</source>
        <translation>Siirryttiin seurantatilaan.</translation>
    </message>
    <message>
        <source>Changed to archive mode.</source>
        <translation>Siirryttiin arkistotilaan.</translation>
    </message>
    <message>
        <source>Cannot visualize data:</source>
        <translation>Aineistoa ei voi näyttää:</translation>
    </message>
    <message>
        <source>Site is not selected.</source>
        <translation>Asemaa ei ole valittu.</translation>
    </message>
    <message>
        <source>3D product is not selected.</source>
        <translation>3D-tuotetta ei ole valittu.</translation>
    </message>
    <message>
        <source>Updating live data:</source>
        <translation>Päivitetään seurattava aineisto:</translation>
    </message>
    <message>
        <source>  and %1 h back with %2 min interval.</source>
        <translation>  ja %1 h taaksepäin %2 min välein.</translation>
    </message>
    <message>
        <source>- Frames loaded: %1</source>
        <translation>- Kuvia ladattu: %1</translation>
    </message>
    <message>
        <source>Used file not available anymore:</source>
        <translation>Käytettyä tiedostoa ei enää ole:</translation>
    </message>
    <message>
        <source> -&gt; Closing current data.</source>
        <translation> -&gt; Nykyinen aineisto suljetaan.</translation>
    </message>
    <message>
        <source>Radar site: %1</source>
        <translation>Tutka-asema: %1</translation>
    </message>
    <message>
        <source>Changing 3d product to:</source>
        <translation>Vaihdetaan 3D-tuotteeksi:</translation>
    </message>
    <message>
        <source>Changing 2d product to:</source>
        <translation>Vaihdetaan 2D-tuotteeksi:</translation>
    </message>
    <message>
        <source>3D data directory not defined.</source>
        <translation>3D-aineiston hakemistoa ei ole määritetty.</translation>
    </message>
    <message>
        <source>3D data directory not available:</source>
        <translation>3D-aineiston hakemistoa ei löydy:</translation>
    </message>
    <message>
        <source>Loading archive data:</source>
        <translation>Ladataan arkistoaineisto:</translation>
    </message>
    <message>
        <source>  and  %1 h back with %2 min interval.</source>
        <translation>  ja  %1 h taaksepäin %2 min välein.</translation>
    </message>
    <message>
        <source>(no data)</source>
        <translation>(ei aineistoa)</translation>
    </message>
    <message>
        <source>(No data loaded)</source>
        <translation>(Aineistoa ei ole ladattu)</translation>
    </message>
    <message>
        <source>Site not available: %1</source>
        <translation>Asemaa ei ole saatavilla: %1</translation>
    </message>
    <message>
        <source>3d product not available:</source>
        <translation>3D-tuotetta ei ole saatavilla:</translation>
    </message>
    <message>
        <source>2d product not available:</source>
        <translation>2D-tuotetta ei ole saatavilla:</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>Mukautettu</translation>
    </message>
    <message>
        <source>(Manage presets)</source>
        <translation>(Hallitse esiasetuksia)</translation>
    </message>
    <message>
        <source>Display state: %1</source>
        <translation>Näyttötila: %1</translation>
    </message>
    <message>
        <source>View angle: %1</source>
        <translation>Katselukulma: %1</translation>
    </message>
    <message>
        <source>3d data not available.</source>
        <translation>3D-aineistoa ei ole saatavilla.</translation>
    </message>
    <message>
        <source>Visualizing data set..</source>
        <translation>Piirretään aineistoa..</translation>
    </message>
    <message>
        <source>Done!</source>
        <translation>Valmis!</translation>
    </message>
    <message>
        <source>Current data file closed.</source>
        <translation>Nykyinen tiedosto suljettu.</translation>
    </message>
    <message>
        <source>Converting terrain</source>
        <translation>Muunnetaan maastoa</translation>
    </message>
    <message>
        <source>Preparing frames</source>
        <translation>Valmistellaan kuvia</translation>
    </message>
    <message>
        <source>Background task activity check failed</source>
        <translation>Taustatehtävän tilan tarkistus epäonnistui</translation>
    </message>
    <message>
        <source>Background task is running but inactive</source>
        <translation>Taustatehtävä on käynnissä mutta ei aktiivinen</translation>
    </message>
    <message>
        <source>Background task is active</source>
        <translation>Taustatehtävä on aktiivinen</translation>
    </message>
    <message>
        <source>Background task is stopped</source>
        <translation>Taustatehtävä on pysäytetty</translation>
    </message>
    <message>
        <source>Export tool - background output is stopped</source>
        <translation>Vientityökalu - taustatuotanto on pysäytetty</translation>
    </message>
    <message>
        <source>Export tool - background output is active</source>
        <translation>Vientityökalu - taustatuotanto on aktiivinen</translation>
    </message>
    <message>
        <source>No changes to apply..</source>
        <translation>Ei käyttöön otettavia muutoksia..</translation>
    </message>
    <message>
        <source>Product settings applied..</source>
        <translation>Tuoteasetukset otettu käyttöön..</translation>
    </message>
    <message>
        <source>Product settings applied:</source>
        <translation>Tuoteasetukset otettu käyttöön:</translation>
    </message>
    <message>
        <source>General settings applied:</source>
        <translation>Yleiset asetukset otettu käyttöön:</translation>
    </message>
    <message>
        <source>No changes.</source>
        <translation>Ei muutoksia.</translation>
    </message>
    <message>
        <source>General settings applied..</source>
        <translation>Yleiset asetukset otettu käyttöön..</translation>
    </message>
    <message>
        <source>Data paths changed:</source>
        <translation>Aineistohakemistot muuttuivat:</translation>
    </message>
    <message>
        <source>Current data will be closed.</source>
        <translation>Nykyinen aineisto suljetaan.</translation>
    </message>
    <message>
        <source>Help menu is not configured</source>
        <translation>Ohjevalikkoa ei ole määritetty</translation>
    </message>
    <message>
        <source>Help cancelled</source>
        <translation>Ohje peruttu</translation>
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
    <message>
        <source>Controls</source>
        <translation>Ohjaimet</translation>
    </message>
    <message>
        <source>&amp;Mode</source>
        <translation>&amp;Tila</translation>
    </message>
    <message>
        <source>Follow the newest data, or look at data of the archive (Ctrl+L)</source>
        <translation>Seuraa uusinta aineistoa tai katsele arkistoa (Ctrl+L)</translation>
    </message>
    <message>
        <source>Mode</source>
        <translation>Tila</translation>
    </message>
    <message>
        <source>Live</source>
        <translation>Seuranta</translation>
    </message>
    <message>
        <source>Archive</source>
        <translation>Arkisto</translation>
    </message>
    <message>
        <source>&amp;Site</source>
        <translation>&amp;Asema</translation>
    </message>
    <message>
        <source>Select radar site</source>
        <translation>Valitse tutka-asema</translation>
    </message>
    <message>
        <source>Site</source>
        <translation>Asema</translation>
    </message>
    <message>
        <source>&amp;3D product</source>
        <translation>&amp;3D-tuote</translation>
    </message>
    <message>
        <source>Select 3D product</source>
        <translation>Valitse 3D-tuote</translation>
    </message>
    <message>
        <source>3D product</source>
        <translation>3D-tuote</translation>
    </message>
    <message>
        <source>&amp;2D product</source>
        <translation>&amp;2D-tuote</translation>
    </message>
    <message>
        <source>Select 2D product</source>
        <translation>Valitse 2D-tuote</translation>
    </message>
    <message>
        <source>2D product</source>
        <translation>2D-tuote</translation>
    </message>
    <message>
        <source>Radar layers</source>
        <translation>Tutkatasot</translation>
    </message>
    <message>
        <source>Show or hide: Radar layers (Ctrl+1)</source>
        <translation>Näytä tai piilota: Tutkatasot (Ctrl+1)</translation>
    </message>
    <message>
        <source>Opacity: Radar layers</source>
        <translation>Peittävyys: Tutkatasot</translation>
    </message>
    <message>
        <source>3D outline</source>
        <translation>3D-rajat</translation>
    </message>
    <message>
        <source>Show or hide: 3D outline (Ctrl+2)</source>
        <translation>Näytä tai piilota: 3D-rajat (Ctrl+2)</translation>
    </message>
    <message>
        <source>Opacity: 3D outline</source>
        <translation>Peittävyys: 3D-rajat</translation>
    </message>
    <message>
        <source>Show or hide: 3D product (Ctrl+3)</source>
        <translation>Näytä tai piilota: 3D-tuote (Ctrl+3)</translation>
    </message>
    <message>
        <source>Opacity: 3D product</source>
        <translation>Peittävyys: 3D-tuote</translation>
    </message>
    <message>
        <source>Show or hide: 2D product (Ctrl+4)</source>
        <translation>Näytä tai piilota: 2D-tuote (Ctrl+4)</translation>
    </message>
    <message>
        <source>Opacity: 2D product</source>
        <translation>Peittävyys: 2D-tuote</translation>
    </message>
    <message>
        <source>Geo layers</source>
        <translation>Maantieteelliset tasot</translation>
    </message>
    <message>
        <source>Show or hide: Geo layers (Ctrl+5)</source>
        <translation>Näytä tai piilota: Maantieteelliset tasot (Ctrl+5)</translation>
    </message>
    <message>
        <source>Opacity: Geo layers</source>
        <translation>Peittävyys: Maantieteelliset tasot</translation>
    </message>
    <message>
        <source>3D terrain</source>
        <translation>3D-maasto</translation>
    </message>
    <message>
        <source>Show or hide: 3D terrain (Ctrl+6)</source>
        <translation>Näytä tai piilota: 3D-maasto (Ctrl+6)</translation>
    </message>
    <message>
        <source>Opacity: 3D terrain</source>
        <translation>Peittävyys: 3D-maasto</translation>
    </message>
    <message>
        <source>Lat/lon grid</source>
        <translation>Koordinaattiverkko</translation>
    </message>
    <message>
        <source>Show or hide: Lat/lon grid (Ctrl+7)</source>
        <translation>Näytä tai piilota: Koordinaattiverkko (Ctrl+7)</translation>
    </message>
    <message>
        <source>Opacity: Lat/lon grid</source>
        <translation>Peittävyys: Koordinaattiverkko</translation>
    </message>
    <message>
        <source>Range rings</source>
        <translation>Etäisyysrenkaat</translation>
    </message>
    <message>
        <source>Show or hide: Range rings (Ctrl+8)</source>
        <translation>Näytä tai piilota: Etäisyysrenkaat (Ctrl+8)</translation>
    </message>
    <message>
        <source>Opacity: Range rings</source>
        <translation>Peittävyys: Etäisyysrenkaat</translation>
    </message>
    <message>
        <source>Landmarks</source>
        <translation>Maamerkit</translation>
    </message>
    <message>
        <source>Show or hide: Landmarks (Ctrl+9)</source>
        <translation>Näytä tai piilota: Maamerkit (Ctrl+9)</translation>
    </message>
    <message>
        <source>Opacity: Landmarks</source>
        <translation>Peittävyys: Maamerkit</translation>
    </message>
    <message>
        <source>&amp;Display</source>
        <translation>&amp;Näyttö</translation>
    </message>
    <message>
        <source>Select display state</source>
        <translation>Valitse näyttötila</translation>
    </message>
    <message>
        <source>Display</source>
        <translation>Näyttö</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Katselu</translation>
    </message>
    <message>
        <source>Select view angle</source>
        <translation>Valitse katselukulma</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Katselu</translation>
    </message>
    <message>
        <source>&amp;History</source>
        <translation>&amp;Historia</translation>
    </message>
    <message>
        <source>What has happened, the newest last</source>
        <translation>Tapahtumat, uusin viimeisenä</translation>
    </message>
    <message>
        <source>Animation</source>
        <translation>Animaatio</translation>
    </message>
    <message>
        <source>Previous frame (Alt+Left)</source>
        <translation>Edellinen kuva (Alt+Left)</translation>
    </message>
    <message>
        <source>Previous frame</source>
        <translation>Edellinen kuva</translation>
    </message>
    <message>
        <source>Play animation (F5)</source>
        <translation>Toista animaatio (F5)</translation>
    </message>
    <message>
        <source>Play animation</source>
        <translation>Toista animaatio</translation>
    </message>
    <message>
        <source>Next frame (Alt+Right)</source>
        <translation>Seuraava kuva (Alt+Right)</translation>
    </message>
    <message>
        <source>Next frame</source>
        <translation>Seuraava kuva</translation>
    </message>
    <message>
        <source>Frame:</source>
        <translation>Kuva:</translation>
    </message>
    <message>
        <source>Animation position</source>
        <translation>Animaation kohta</translation>
    </message>
    <message>
        <source>Select the frame</source>
        <translation>Valitse kuva</translation>
    </message>
    <message>
        <source>&amp;Time span:</source>
        <translation>A&amp;ikajakso:</translation>
    </message>
    <message>
        <source>Select animation time span</source>
        <translation>Valitse animaation aikajakso</translation>
    </message>
    <message>
        <source>Time span</source>
        <translation>Aikajakso</translation>
    </message>
    <message>
        <source>3 hours</source>
        <translation>3 tuntia</translation>
    </message>
    <message>
        <source>6 hours</source>
        <translation>6 tuntia</translation>
    </message>
    <message>
        <source>12 hours</source>
        <translation>12 tuntia</translation>
    </message>
    <message>
        <source>24 hours</source>
        <translation>24 tuntia</translation>
    </message>
    <message>
        <source>&amp;Frame interval:</source>
        <translation>K&amp;uvaväli:</translation>
    </message>
    <message>
        <source>Select animation frame interval</source>
        <translation>Valitse animaation kuvaväli</translation>
    </message>
    <message>
        <source>Frame interval</source>
        <translation>Kuvaväli</translation>
    </message>
    <message>
        <source>5 mins</source>
        <translation>5 min</translation>
    </message>
    <message>
        <source>15 mins</source>
        <translation>15 min</translation>
    </message>
    <message>
        <source>30 mins</source>
        <translation>30 min</translation>
    </message>
    <message>
        <source>60 mins</source>
        <translation>60 min</translation>
    </message>
    <message>
        <source>&amp;Animation speed:</source>
        <translation>N&amp;opeus:</translation>
    </message>
    <message>
        <source>Select animation speed</source>
        <translation>Valitse animaation nopeus</translation>
    </message>
    <message>
        <source>Animation speed</source>
        <translation>Animaation nopeus</translation>
    </message>
    <message>
        <source>Fastest</source>
        <translation>Nopein</translation>
    </message>
    <message>
        <source>1 sec</source>
        <translation>1 s</translation>
    </message>
    <message>
        <source>3 secs</source>
        <translation>3 s</translation>
    </message>
    <message>
        <source>5 secs</source>
        <translation>5 s</translation>
    </message>
    <message>
        <source>10 secs</source>
        <translation>10 s</translation>
    </message>
    <message>
        <source>&amp;Looping:</source>
        <translation>Toi&amp;sto:</translation>
    </message>
    <message>
        <source>Select animation loop mode</source>
        <translation>Valitse animaation toistotapa</translation>
    </message>
    <message>
        <source>Looping</source>
        <translation>Toisto</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Ei</translation>
    </message>
    <message>
        <source>On</source>
        <translation>Kyllä</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>&amp;Avaa...</translation>
    </message>
    <message>
        <source>Open 3D data (Ctrl+O)</source>
        <translation>Avaa 3D-aineisto (Ctrl+O)</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Sulje</translation>
    </message>
    <message>
        <source>Close data (Ctrl+W)</source>
        <translation>Sulje aineisto (Ctrl+W)</translation>
    </message>
    <message>
        <source>&amp;Product information</source>
        <translation>&amp;Tuotetiedot</translation>
    </message>
    <message>
        <source>Product information (F2)</source>
        <translation>Tuotetiedot (F2)</translation>
    </message>
    <message>
        <source>Cursor tool (F3)</source>
        <translation>Mittaustyökalu (F3)</translation>
    </message>
    <message>
        <source>&amp;Extra window</source>
        <translation>&amp;Lisäikkuna</translation>
    </message>
    <message>
        <source>Extra window (F4)</source>
        <translation>Lisäikkuna (F4)</translation>
    </message>
    <message>
        <source>&amp;Export</source>
        <translation>&amp;Vie</translation>
    </message>
    <message>
        <source>Export tool - background output is stopped</source>
        <translation>Vientityökalu - taustatuotanto on pysäytetty</translation>
    </message>
    <message>
        <source>&amp;Animation</source>
        <translation>A&amp;nimaatio</translation>
    </message>
    <message>
        <source>Animation controls (F7)</source>
        <translation>Animaation ohjaimet (F7)</translation>
    </message>
    <message>
        <source>&amp;Hide panels</source>
        <translation>&amp;Piilota paneelit</translation>
    </message>
    <message>
        <source>Hide panels (F6)</source>
        <translation>Piilota paneelit (F6)</translation>
    </message>
    <message>
        <source>&amp;Full screen</source>
        <translation>&amp;Koko näyttö</translation>
    </message>
    <message>
        <source>Full screen (F11)</source>
        <translation>Koko näyttö (F11)</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>A&amp;setukset</translation>
    </message>
    <message>
        <source>Settings (Ctrl+,)</source>
        <translation>Asetukset (Ctrl+,)</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Ohje</translation>
    </message>
    <message>
        <source>Help (F1)</source>
        <translation>Ohje (F1)</translation>
    </message>
    <message>
        <source>Pause animation</source>
        <translation>Keskeytä animaatio</translation>
    </message>
    <message>
        <source>Pause animation (F5)</source>
        <translation>Keskeytä animaatio (F5)</translation>
    </message>
    <message>
        <source>S&amp;how panels</source>
        <translation>N&amp;äytä paneelit</translation>
    </message>
    <message>
        <source>Show panels (F6)</source>
        <translation>Näytä paneelit (F6)</translation>
    </message>
</context>
<context>
    <name>TORVColorKey</name>
    <message>
        <source>Colour key</source>
        <translation>Väriasteikko</translation>
    </message>
    <message>
        <source>Colours from %1 to %2 %3</source>
        <translation>Värit %1 – %2 %3</translation>
    </message>
    <message>
        <source>Arrows: surfaces at %1 %2</source>
        <translation>Nuolet: pinnat arvoissa %1 %2</translation>
    </message>
    <message>
        <source>No product is shown</source>
        <translation>Tuotetta ei ole näkyvissä</translation>
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
    <name>TORVCursorToolDialog</name>
    <message>
        <source>Cursor tool</source>
        <translation>Mittaustyökalu</translation>
    </message>
    <message>
        <source>Colour of the value under the cursor, white where there is none</source>
        <translation>Kohdistimen alla olevan arvon väri, valkoinen jos arvoa ei ole</translation>
    </message>
    <message>
        <source>Colour of the value</source>
        <translation>Arvon väri</translation>
    </message>
    <message>
        <source>What the volume that is drawn holds under the cursor</source>
        <translation>Kuvatun 3D-aineiston arvo kohdistimen alla</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Arvo</translation>
    </message>
    <message>
        <source>NA</source>
        <translation>NA</translation>
    </message>
    <message>
        <source>Unit of the value</source>
        <translation>Arvon yksikkö</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Yksikkö</translation>
    </message>
    <message>
        <source>What is measured</source>
        <translation>Mitattu suure</translation>
    </message>
    <message>
        <source>Quantity</source>
        <translation>Suure</translation>
    </message>
    <message>
        <source>Altitude</source>
        <translation>Korkeus</translation>
    </message>
    <message>
        <source>Height of the cursor above sea level</source>
        <translation>Kohdistimen korkeus merenpinnasta</translation>
    </message>
    <message>
        <source>Terrain</source>
        <translation>Maanpinta</translation>
    </message>
    <message>
        <source>Height of the ground under the cursor above sea level, once the terrain is there</source>
        <translation>Kohdistimen alla olevan maanpinnan korkeus merenpinnasta, kun maasto on ladattu</translation>
    </message>
    <message>
        <source>Latitude</source>
        <translation>Leveysaste</translation>
    </message>
    <message>
        <source>Latitude of the cursor</source>
        <translation>Kohdistimen leveysaste</translation>
    </message>
    <message>
        <source>Longitude</source>
        <translation>Pituusaste</translation>
    </message>
    <message>
        <source>Longitude of the cursor</source>
        <translation>Kohdistimen pituusaste</translation>
    </message>
    <message>
        <source>Show or hide how the cursor lies from the home point</source>
        <translation>Näytä tai piilota kohdistimen sijainti kotipisteestä mitattuna</translation>
    </message>
    <message>
        <source>From home point</source>
        <translation>Kotipisteestä</translation>
    </message>
    <message>
        <source>&amp;From home point</source>
        <translation>Ko&amp;tipisteestä</translation>
    </message>
    <message>
        <source>Where distances and directions are measured from</source>
        <translation>Piste, josta etäisyydet ja suunnat mitataan</translation>
    </message>
    <message>
        <source>Home point</source>
        <translation>Kotipiste</translation>
    </message>
    <message>
        <source>Radar site</source>
        <translation>Tutka-asema</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>Oma piste</translation>
    </message>
    <message>
        <source>Make the place of the cursor the home point</source>
        <translation>Aseta kotipiste kohdistimen kohdalle</translation>
    </message>
    <message>
        <source>Set home point here</source>
        <translation>Aseta kotipiste tähän</translation>
    </message>
    <message>
        <source>Set &amp;here</source>
        <translation>A&amp;seta tähän</translation>
    </message>
    <message>
        <source>Ho&amp;me</source>
        <translation>&amp;Koti</translation>
    </message>
    <message>
        <source>Place of the home point</source>
        <translation>Kotipisteen sijainti</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Koti</translation>
    </message>
    <message>
        <source>Home altitude</source>
        <translation>Kodin korkeus</translation>
    </message>
    <message>
        <source>Height of the home point above sea level</source>
        <translation>Kotipisteen korkeus merenpinnasta</translation>
    </message>
    <message>
        <source>North/south</source>
        <translation>Pohjoinen/etelä</translation>
    </message>
    <message>
        <source>How far north or south of the home point the cursor is</source>
        <translation>Kohdistimen etäisyys kotipisteestä pohjoiseen tai etelään</translation>
    </message>
    <message>
        <source>East/west</source>
        <translation>Itä/länsi</translation>
    </message>
    <message>
        <source>How far east or west of the home point the cursor is</source>
        <translation>Kohdistimen etäisyys kotipisteestä itään tai länteen</translation>
    </message>
    <message>
        <source>Range</source>
        <translation>Etäisyys</translation>
    </message>
    <message>
        <source>Distance from the home point along the Earth&apos;s surface</source>
        <translation>Etäisyys kotipisteestä maapallon pintaa pitkin</translation>
    </message>
    <message>
        <source>Ground distance</source>
        <translation>Vaakaetäisyys</translation>
    </message>
    <message>
        <source>Straight distance from the home point in the plane of the scene</source>
        <translation>Suora etäisyys kotipisteestä näkymän tasossa</translation>
    </message>
    <message>
        <source>Bearing</source>
        <translation>Suuntima</translation>
    </message>
    <message>
        <source>Direction from the home point, clockwise from north</source>
        <translation>Suunta kotipisteestä, myötäpäivään pohjoisesta</translation>
    </message>
    <message>
        <source>Elevation</source>
        <translation>Korkeuskulma</translation>
    </message>
    <message>
        <source>Angle above the horizontal, seen from the home point</source>
        <translation>Kulma vaakatasosta kotipisteestä katsottuna</translation>
    </message>
    <message>
        <source> N</source>
        <translation> N</translation>
    </message>
    <message>
        <source> S</source>
        <translation> S</translation>
    </message>
    <message>
        <source> E</source>
        <translation> E</translation>
    </message>
    <message>
        <source> W</source>
        <translation> W</translation>
    </message>
    <message>
        <source>Straight distance from the home point in the plane of the scene; with the heights it is %1</source>
        <translation>Suora etäisyys kotipisteestä näkymän tasossa; korkeudet mukaan lukien %1</translation>
    </message>
</context>
<context>
    <name>TORVDataSelectionDialogClass</name>
    <message>
        <source>3D data selector</source>
        <translation>3D-aineiston valinta</translation>
    </message>
    <message>
        <source>&amp;Volumes by site and quantity</source>
        <translation>&amp;Mittaukset asemittain ja suureittain</translation>
    </message>
    <message>
        <source>The volumes on the disk, under site and quantity; double-click one to show it</source>
        <translation>Levyllä olevat mittaukset asemittain ja suureittain; kaksoisnapsauta näyttääksesi mittauksen</translation>
    </message>
    <message>
        <source>Volumes by site and quantity</source>
        <translation>Mittaukset asemittain ja suureittain</translation>
    </message>
    <message>
        <source>Keep what is shown (Esc)</source>
        <translation>Säilytä nykyinen näkymä (Esc)</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Peruuta</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Peruuta</translation>
    </message>
    <message>
        <source>Show the selected volume (Return)</source>
        <translation>Näytä valittu mittaus (Enter)</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;OK</translation>
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
    <name>TORVDirectoryEdit</name>
    <message>
        <source>Invalid directory: %1</source>
        <translation>Virheellinen hakemisto: %1</translation>
    </message>
</context>
<context>
    <name>TORVDiskSpaceIndicator</name>
    <message>
        <source>%1 MB</source>
        <translation>%1 Mt</translation>
    </message>
    <message>
        <source>%1 GB</source>
        <translation>%1 Gt</translation>
    </message>
    <message>
        <source>Disk space information not available</source>
        <translation>Levytilan tietoja ei ole saatavilla</translation>
    </message>
    <message>
        <source>%1% of disk space is used (%2)</source>
        <translation>%1 % levytilasta on käytössä (%2)</translation>
    </message>
    <message>
        <source>Disk space used more than %1%</source>
        <translation>Levytilasta on käytössä yli %1 %</translation>
    </message>
    <message>
        <source>  - path: %1</source>
        <translation>  - polku: %1</translation>
    </message>
</context>
<context>
    <name>TORVDisplayStateManager</name>
    <message>
        <source>Display presets</source>
        <translation>Näytön esiasetukset</translation>
    </message>
</context>
<context>
    <name>TORVDockTitle</name>
    <message>
        <source>Put back</source>
        <translation>Palauta</translation>
    </message>
    <message>
        <source>Put the panel back into the window</source>
        <translation>Palauta paneeli ikkunaan</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Sulje</translation>
    </message>
    <message>
        <source>Close the panel</source>
        <translation>Sulje paneeli</translation>
    </message>
</context>
<context>
    <name>TORVDoubleModeDialog</name>
    <message>
        <source>(No data loaded.)</source>
        <translation>(Aineistoa ei ole ladattu.)</translation>
    </message>
    <message>
        <source>Loading: </source>
        <translation>Ladataan: </translation>
    </message>
</context>
<context>
    <name>TORVDoubleModeDialogClass</name>
    <message>
        <source>Scene of the extra window</source>
        <translation>Lisäikkunan näkymä</translation>
    </message>
</context>
<context>
    <name>TORVGeneralSettingsDialog</name>
    <message>
        <source>Settings window</source>
        <translation>Asetukset</translation>
    </message>
    <message>
        <source>Units</source>
        <translation>Yksiköt</translation>
    </message>
    <message>
        <source>Time:</source>
        <translation>Aika:</translation>
    </message>
    <message>
        <source>Set 12-hour time format</source>
        <translation>Näytä ajat 12 tunnin kellolla</translation>
    </message>
    <message>
        <source>12-hour clock</source>
        <translation>12 tunnin kello</translation>
    </message>
    <message>
        <source>&amp;12-hour clock</source>
        <translation>&amp;12 tunnin kello</translation>
    </message>
    <message>
        <source>Set 24-hour time format</source>
        <translation>Näytä ajat 24 tunnin kellolla</translation>
    </message>
    <message>
        <source>24-hour clock</source>
        <translation>24 tunnin kello</translation>
    </message>
    <message>
        <source>&amp;24-hour clock</source>
        <translation>&amp;24 tunnin kello</translation>
    </message>
    <message>
        <source>Units:</source>
        <translation>Yksiköt:</translation>
    </message>
    <message>
        <source>Set English unit system</source>
        <translation>Käytä brittiläisiä yksiköitä</translation>
    </message>
    <message>
        <source>English units</source>
        <translation>Brittiläiset yksiköt</translation>
    </message>
    <message>
        <source>&amp;English</source>
        <translation>&amp;Brittiläiset</translation>
    </message>
    <message>
        <source>Set metric unit system</source>
        <translation>Käytä metrisiä yksiköitä</translation>
    </message>
    <message>
        <source>Metric units</source>
        <translation>Metriset yksiköt</translation>
    </message>
    <message>
        <source>&amp;Metric</source>
        <translation>&amp;Metriset</translation>
    </message>
    <message>
        <source>&amp;Lat/Lon unit:</source>
        <translation>Koo&amp;rdinaatit:</translation>
    </message>
    <message>
        <source>Set location format</source>
        <translation>Valitse koordinaattien esitysmuoto</translation>
    </message>
    <message>
        <source>Lat/Lon unit</source>
        <translation>Koordinaattien muoto</translation>
    </message>
    <message>
        <source>3D scene</source>
        <translation>3D-näkymä</translation>
    </message>
    <message>
        <source>&amp;Vertical scale:</source>
        <translation>&amp;Pystymittakaava:</translation>
    </message>
    <message>
        <source>Set vertical scaling factor for visualization</source>
        <translation>Aseta näkymän pystysuuntainen mittakaavakerroin</translation>
    </message>
    <message>
        <source>Vertical scale</source>
        <translation>Pystymittakaava</translation>
    </message>
    <message>
        <source>Data resolution</source>
        <translation>Erotuskyky</translation>
    </message>
    <message>
        <source>&amp;Horizontal:</source>
        <translation>&amp;Vaaka:</translation>
    </message>
    <message>
        <source>3D data resolution in horizontal directions</source>
        <translation>3D-aineiston erotuskyky vaakasuunnissa</translation>
    </message>
    <message>
        <source>Horizontal resolution</source>
        <translation>Erotuskyky vaakasuunnassa</translation>
    </message>
    <message>
        <source>Ver&amp;tical:</source>
        <translation>P&amp;ysty:</translation>
    </message>
    <message>
        <source>3D data resolution in vertical direction</source>
        <translation>3D-aineiston erotuskyky pystysuunnassa</translation>
    </message>
    <message>
        <source>Vertical resolution</source>
        <translation>Erotuskyky pystysuunnassa</translation>
    </message>
    <message>
        <source>Data &amp;smoothing:</source>
        <translation>&amp;Tasoitus:</translation>
    </message>
    <message>
        <source>Amount of 3D data smoothing </source>
        <translation>3D-aineiston tasoituksen määrä </translation>
    </message>
    <message>
        <source>Data smoothing</source>
        <translation>Aineiston tasoitus</translation>
    </message>
    <message>
        <source>Data locations</source>
        <translation>Aineistojen sijainnit</translation>
    </message>
    <message>
        <source>&amp;GEO data location:</source>
        <translation>&amp;GEO-aineisto:</translation>
    </message>
    <message>
        <source>Elevation data directory</source>
        <translation>Korkeusaineiston hakemisto</translation>
    </message>
    <message>
        <source>GEO data location</source>
        <translation>GEO-aineiston sijainti</translation>
    </message>
    <message>
        <source>Select the elevation data directory</source>
        <translation>Valitse korkeusaineiston hakemisto</translation>
    </message>
    <message>
        <source>&amp;3D data location:</source>
        <translation>&amp;3D-aineisto:</translation>
    </message>
    <message>
        <source>3D data directory</source>
        <translation>3D-aineiston hakemisto</translation>
    </message>
    <message>
        <source>3D data location</source>
        <translation>3D-aineiston sijainti</translation>
    </message>
    <message>
        <source>Select the 3D data directory</source>
        <translation>Valitse 3D-aineiston hakemisto</translation>
    </message>
    <message>
        <source>2&amp;D data location:</source>
        <translation>2&amp;D-aineisto:</translation>
    </message>
    <message>
        <source>2D data directory</source>
        <translation>2D-aineiston hakemisto</translation>
    </message>
    <message>
        <source>2D data location</source>
        <translation>2D-aineiston sijainti</translation>
    </message>
    <message>
        <source>Select the 2D data directory</source>
        <translation>Valitse 2D-aineiston hakemisto</translation>
    </message>
    <message>
        <source>Disk space</source>
        <translation>Levytila</translation>
    </message>
    <message>
        <source>Reset to default settings</source>
        <translation>Palauta oletusasetukset</translation>
    </message>
    <message>
        <source>Reset to defaults</source>
        <translation>Palauta oletukset</translation>
    </message>
    <message>
        <source>&amp;Reset to defaults</source>
        <translation>Palauta &amp;oletukset</translation>
    </message>
    <message>
        <source>Delete the elevation data that was made ready for drawing</source>
        <translation>Poista piirtoa varten muunnettu korkeusaineisto</translation>
    </message>
    <message>
        <source>Clear GEO cache</source>
        <translation>Tyhjennä GEO-välimuisti</translation>
    </message>
    <message>
        <source>Clear GEO &amp;cache</source>
        <translation>Ty&amp;hjennä GEO-välimuisti</translation>
    </message>
    <message>
        <source>Apply general settings</source>
        <translation>Ota yleiset asetukset käyttöön</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Käytä</translation>
    </message>
    <message>
        <source>&amp;Apply</source>
        <translation>&amp;Käytä</translation>
    </message>
    <message>
        <source>Decimal degrees</source>
        <translation>Desimaaliasteet</translation>
    </message>
    <message>
        <source>Degrees, decimal minutes</source>
        <translation>Asteet, desimaaliminuutit</translation>
    </message>
    <message>
        <source>Degrees, minutes, decimal seconds</source>
        <translation>Asteet, minuutit, desimaalisekunnit</translation>
    </message>
    <message>
        <source>Full</source>
        <translation>Täysi</translation>
    </message>
    <message>
        <source>Half</source>
        <translation>Puolet</translation>
    </message>
    <message>
        <source>1/3x</source>
        <translation>1/3</translation>
    </message>
    <message>
        <source>1/4x</source>
        <translation>1/4</translation>
    </message>
    <message>
        <source>Not available</source>
        <translation>Ei saatavilla</translation>
    </message>
    <message>
        <source>%1% (%2)</source>
        <translation>%1 % (%2)</translation>
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
    <name>TORVPresetManager</name>
    <message>
        <source>This name is in use by the program</source>
        <translation>Ohjelma käyttää tätä nimeä itse</translation>
    </message>
    <message>
        <source>Replaces the preset of this name</source>
        <translation>Korvaa samannimisen esiasetuksen</translation>
    </message>
</context>
<context>
    <name>TORVPresetManagerClass</name>
    <message>
        <source>&amp;Presets</source>
        <translation>&amp;Esiasetukset</translation>
    </message>
    <message>
        <source>The presets; double-click one to apply it</source>
        <translation>Esiasetukset; kaksoisnapsauta ottaaksesi esiasetuksen käyttöön</translation>
    </message>
    <message>
        <source>Presets</source>
        <translation>Esiasetukset</translation>
    </message>
    <message>
        <source>Show the selected preset in the main window (Return)</source>
        <translation>Näytä valittu esiasetus pääikkunassa (Enter)</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Käytä</translation>
    </message>
    <message>
        <source>&amp;Apply</source>
        <translation>&amp;Käytä</translation>
    </message>
    <message>
        <source>Remove the selected preset from the list</source>
        <translation>Poista valittu esiasetus luettelosta</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Poista</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Poista</translation>
    </message>
    <message>
        <source>&amp;Name of a new preset</source>
        <translation>&amp;Uuden esiasetuksen nimi</translation>
    </message>
    <message>
        <source>The name under which to save what the main window shows now</source>
        <translation>Nimi, jolla pääikkunan nykyinen näkymä tallennetaan</translation>
    </message>
    <message>
        <source>Name of a new preset</source>
        <translation>Uuden esiasetuksen nimi</translation>
    </message>
    <message>
        <source>Save what the main window shows now under this name (Return)</source>
        <translation>Tallenna pääikkunan nykyinen näkymä tällä nimellä (Enter)</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Tallenna</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Tallenna</translation>
    </message>
    <message>
        <source>Close this window (Esc)</source>
        <translation>Sulje ikkuna (Esc)</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Sulje</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Sulje</translation>
    </message>
</context>
<context>
    <name>TORVProductInformationDialog</name>
    <message>
        <source>Product information</source>
        <translation>Tuotteen tiedot</translation>
    </message>
    <message>
        <source>What is measured, and its unit</source>
        <translation>Mitattu suure ja sen yksikkö</translation>
    </message>
    <message>
        <source>Quantity</source>
        <translation>Suure</translation>
    </message>
    <message>
        <source>Not available</source>
        <translation>Ei saatavilla</translation>
    </message>
    <message>
        <source>Site, product and time of the volume, in UTC</source>
        <translation>Mittauksen asema, tuote ja UTC-aika</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Mittaus</translation>
    </message>
    <message>
        <source>&amp;Rendering</source>
        <translation>&amp;Esitystapa</translation>
    </message>
    <message>
        <source>Draw the product as a volume or as surfaces</source>
        <translation>Piirrä tuote tilavuutena tai pintoina</translation>
    </message>
    <message>
        <source>Rendering</source>
        <translation>Esitystapa</translation>
    </message>
    <message>
        <source>Volume rendering</source>
        <translation>Tilavuusesitys</translation>
    </message>
    <message>
        <source>Surface rendering</source>
        <translation>Pintaesitys</translation>
    </message>
    <message>
        <source>&amp;Colour scale</source>
        <translation>&amp;Väriasteikko</translation>
    </message>
    <message>
        <source>The colours that values of the product are drawn in</source>
        <translation>Värit, joilla tuotteen arvot piirretään</translation>
    </message>
    <message>
        <source>Colour scale</source>
        <translation>Väriasteikko</translation>
    </message>
    <message>
        <source>The colour scale and its values</source>
        <translation>Väriasteikko ja sen arvot</translation>
    </message>
    <message>
        <source>Colour bar</source>
        <translation>Väripalkki</translation>
    </message>
    <message>
        <source>&amp;Value</source>
        <translation>&amp;Arvo</translation>
    </message>
    <message>
        <source>&amp;Opacity, %</source>
        <translation>&amp;Peitto, %</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Väri</translation>
    </message>
    <message>
        <source>Draw this surface</source>
        <translation>Piirrä tämä pinta</translation>
    </message>
    <message>
        <source>Surface 1</source>
        <translation>Pinta 1</translation>
    </message>
    <message>
        <source>Surface &amp;1</source>
        <translation>Pinta &amp;1</translation>
    </message>
    <message>
        <source>The value that the surface goes through</source>
        <translation>Arvo, jonka kautta pinta kulkee</translation>
    </message>
    <message>
        <source>Value of surface 1</source>
        <translation>Pinnan 1 arvo</translation>
    </message>
    <message>
        <source>How opaque the surface is, in percent</source>
        <translation>Pinnan peittävyys prosentteina</translation>
    </message>
    <message>
        <source>Opacity of surface 1</source>
        <translation>Pinnan 1 peitto</translation>
    </message>
    <message>
        <source>Colour of the value in the colour scale</source>
        <translation>Arvon väri väriasteikossa</translation>
    </message>
    <message>
        <source>Colour of surface 1</source>
        <translation>Pinnan 1 väri</translation>
    </message>
    <message>
        <source>Surface 2</source>
        <translation>Pinta 2</translation>
    </message>
    <message>
        <source>Surface &amp;2</source>
        <translation>Pinta &amp;2</translation>
    </message>
    <message>
        <source>Value of surface 2</source>
        <translation>Pinnan 2 arvo</translation>
    </message>
    <message>
        <source>Opacity of surface 2</source>
        <translation>Pinnan 2 peitto</translation>
    </message>
    <message>
        <source>Colour of surface 2</source>
        <translation>Pinnan 2 väri</translation>
    </message>
    <message>
        <source>Surface 3</source>
        <translation>Pinta 3</translation>
    </message>
    <message>
        <source>Surface &amp;3</source>
        <translation>Pinta &amp;3</translation>
    </message>
    <message>
        <source>Value of surface 3</source>
        <translation>Pinnan 3 arvo</translation>
    </message>
    <message>
        <source>Opacity of surface 3</source>
        <translation>Pinnan 3 peitto</translation>
    </message>
    <message>
        <source>Colour of surface 3</source>
        <translation>Pinnan 3 väri</translation>
    </message>
    <message>
        <source>Surface 4</source>
        <translation>Pinta 4</translation>
    </message>
    <message>
        <source>Surface &amp;4</source>
        <translation>Pinta &amp;4</translation>
    </message>
    <message>
        <source>Value of surface 4</source>
        <translation>Pinnan 4 arvo</translation>
    </message>
    <message>
        <source>Opacity of surface 4</source>
        <translation>Pinnan 4 peitto</translation>
    </message>
    <message>
        <source>Colour of surface 4</source>
        <translation>Pinnan 4 väri</translation>
    </message>
    <message>
        <source>&amp;Low</source>
        <translation>&amp;Matala</translation>
    </message>
    <message>
        <source>The value that the volume begins to show at</source>
        <translation>Arvo, josta alkaen tilavuus näkyy</translation>
    </message>
    <message>
        <source>Low value</source>
        <translation>Matala arvo</translation>
    </message>
    <message>
        <source>How opaque the volume is at the low value, in percent</source>
        <translation>Tilavuuden peittävyys matalan arvon kohdalla prosentteina</translation>
    </message>
    <message>
        <source>Opacity of the low value</source>
        <translation>Matalan arvon peitto</translation>
    </message>
    <message>
        <source>Colour of the low value</source>
        <translation>Matalan arvon väri</translation>
    </message>
    <message>
        <source>&amp;High</source>
        <translation>&amp;Korkea</translation>
    </message>
    <message>
        <source>The value from which on the volume is most opaque</source>
        <translation>Arvo, josta alkaen tilavuus on peittävimmillään</translation>
    </message>
    <message>
        <source>High value</source>
        <translation>Korkea arvo</translation>
    </message>
    <message>
        <source>How opaque the volume is at the high value, in percent</source>
        <translation>Tilavuuden peittävyys korkean arvon kohdalla prosentteina</translation>
    </message>
    <message>
        <source>Opacity of the high value</source>
        <translation>Korkean arvon peitto</translation>
    </message>
    <message>
        <source>Colour of the high value</source>
        <translation>Korkean arvon väri</translation>
    </message>
    <message>
        <source>Two surfaces have the same value; the second is left out</source>
        <translation>Sama arvo kahdesti; jälkimmäistä ei piirretä</translation>
    </message>
    <message>
        <source>Show the defaults of the quantity</source>
        <translation>Näytä suureen oletusasetukset</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Oletukset</translation>
    </message>
    <message>
        <source>R&amp;eset</source>
        <translation>&amp;Oletukset</translation>
    </message>
    <message>
        <source>Show what the product is drawn by again (Esc)</source>
        <translation>Näytä taas asetukset, joilla tuote on piirretty (Esc)</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Peruuta</translation>
    </message>
    <message>
        <source>Ca&amp;ncel</source>
        <translation>Pe&amp;ruuta</translation>
    </message>
    <message>
        <source>Store these settings for the product and draw it by them</source>
        <translation>Tallenna asetukset tuotteelle ja piirrä se niillä</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Tallenna</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Tallenna</translation>
    </message>
    <message>
        <source>Draw the product by these settings (Return)</source>
        <translation>Piirrä tuote näillä asetuksilla (Enter)</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Käytä</translation>
    </message>
    <message>
        <source>&amp;Apply</source>
        <translation>Kä&amp;ytä</translation>
    </message>
    <message>
        <source>Show or hide what the file tells of the volume</source>
        <translation>Näytä tai piilota, mitä tiedosto kertoo mittauksesta</translation>
    </message>
    <message>
        <source>File details</source>
        <translation>Tiedoston tiedot</translation>
    </message>
    <message>
        <source>File &amp;details</source>
        <translation>T&amp;iedoston tiedot</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Sijainti</translation>
    </message>
    <message>
        <source>Where the radar stands</source>
        <translation>Missä tutka sijaitsee</translation>
    </message>
    <message>
        <source>Site height</source>
        <translation>Aseman korkeus</translation>
    </message>
    <message>
        <source>Height of the antenna above sea level: the ground and the antenna on it</source>
        <translation>Antennin korkeus merenpinnasta: maanpinta ja antenni sen päällä</translation>
    </message>
    <message>
        <source>Grid</source>
        <translation>Hila</translation>
    </message>
    <message>
        <source>Points along x, y and z</source>
        <translation>Pisteitä x-, y- ja z-suunnassa</translation>
    </message>
    <message>
        <source>Grid step</source>
        <translation>Hilaväli</translation>
    </message>
    <message>
        <source>Distance of the points along x, y and z</source>
        <translation>Pisteiden väli x-, y- ja z-suunnassa</translation>
    </message>
    <message>
        <source>Extent</source>
        <translation>Laajuus</translation>
    </message>
    <message>
        <source>Width, length and height of the volume</source>
        <translation>Mittauksen leveys, pituus ja korkeus</translation>
    </message>
    <message>
        <source>Projection</source>
        <translation>Projektio</translation>
    </message>
    <message>
        <source>Map projection of the grid</source>
        <translation>Hilan karttaprojektio</translation>
    </message>
    <message>
        <source>Earth model</source>
        <translation>Maan malli</translation>
    </message>
    <message>
        <source>Radius of the Earth and how flat it is</source>
        <translation>Maan säde ja litistyneisyys</translation>
    </message>
    <message>
        <source>Nyquist</source>
        <translation>Nyquist</translation>
    </message>
    <message>
        <source>Greatest velocity that is measured without ambiguity</source>
        <translation>Suurin yksikäsitteisesti mitattava nopeus</translation>
    </message>
    <message>
        <source>Values</source>
        <translation>Arvot</translation>
    </message>
    <message>
        <source>Smallest and greatest value that the file can hold</source>
        <translation>Pienin ja suurin arvo, jonka tiedosto voi sisältää</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Koko</translation>
    </message>
    <message>
        <source>Bytes of the file and of each point</source>
        <translation>Tiedoston koko ja pisteen bittien määrä</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Tiedosto</translation>
    </message>
    <message>
        <source>Name of the file</source>
        <translation>Tiedoston nimi</translation>
    </message>
    <message>
        <source> ASL)</source>
        <translation> mpy)</translation>
    </message>
    <message>
        <source>Azimuthal Equidistant</source>
        <translation>Oikeapituinen tasoprojektio</translation>
    </message>
    <message>
        <source>Mercator</source>
        <translation>Mercator</translation>
    </message>
    <message>
        <source>Sphere, %1</source>
        <translation>Pallo, %1</translation>
    </message>
    <message>
        <source>Ellipsoid, %1, 1/%2</source>
        <translation>Ellipsoidi, %1, 1/%2</translation>
    </message>
    <message>
        <source>%1 to %2 %3</source>
        <translation>%1 – %2 %3</translation>
    </message>
    <message>
        <source>%1, %2 bits a point</source>
        <translation>%1, %2 bittiä pistettä kohti</translation>
    </message>
    <message>
        <source>&amp;Value, %1</source>
        <translation>&amp;Arvo, %1</translation>
    </message>
    <message>
        <source>Rendering parameters has been modified but not saved</source>
        <translation>Esitystavan asetuksia on muutettu mutta ei tallennettu</translation>
    </message>
    <message>
        <source>Do you want to save your changes?</source>
        <translation>Haluatko tallentaa muutokset?</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>Oletus</translation>
    </message>
    <message>
        <source>Colour-safe</source>
        <translation>Värinäölle turvallinen</translation>
    </message>
    <message>
        <source>Fixed</source>
        <translation>Kiinteä</translation>
    </message>
</context>
<context>
    <name>TORVViewAngleManager</name>
    <message>
        <source>View presets</source>
        <translation>Katselukulman esiasetukset</translation>
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
