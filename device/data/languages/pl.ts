<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pl">
<context>
    <name>device</name>
    <message>
        <source>@1min</source>
        <translation>1&#xa0;min</translation>
    </message>
    <message>
        <source>@2min</source>
        <translation>2&#xa0;min</translation>
    </message>
    <message>
        <source>@5min</source>
        <translation>5&#xa0;min</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningBottomLeft</source>
        <translation>Lewy dolny róg</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningBottomRight</source>
        <translation>Prawy dolny róg</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningTopLeft</source>
        <translation>Lewy górny róg</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningTopRight</source>
        <translation>Prawy górny róg</translation>
    </message>
    <message>
        <source>@AddPhotos</source>
        <translation>Dodaj zdjęcia</translation>
    </message>
    <message>
        <source>@AddPhotosToPlaylist</source>
        <translation>Dodaj zdjęcia do playlisty</translation>
    </message>
    <message>
        <source>@All</source>
        <translation>Wszystkie</translation>
    </message>
    <message>
        <source>@AutomaticBrightness</source>
        <translation>Automatyczna jasność</translation>
    </message>
    <message>
        <source>@AutomaticColorTemperature</source>
        <translation>Automatyczna barwa światła</translation>
    </message>
    <message>
        <source>@AvailableDiskSpace</source>
        <translation>%s wol.&#xa;z %s</translation>
    </message>
    <message>
        <source>@Back</source>
        <extracomment>Leaves a playlist; read aloud</extracomment>
        <translation>Wstecz</translation>
    </message>
    <message>
        <source>@Bold</source>
        <translation>Pogrubiona</translation>
    </message>
    <message>
        <source>@BoldItalic</source>
        <translation>Pogrubiona kursywa</translation>
    </message>
    <message>
        <source>@Brightness</source>
        <translation>Jasność</translation>
    </message>
    <message>
        <source>@Cancel</source>
        <translation>Anuluj</translation>
    </message>
    <message>
        <source>@ChangePictureEvery</source>
        <translation>Czas wyświetlania</translation>
    </message>
    <message>
        <source>@Close</source>
        <translation>Zamknij</translation>
    </message>
    <message>
        <source>@ColorTemperature</source>
        <translation>Barwa światła</translation>
    </message>
    <message>
        <source>@Continue</source>
        <translation>Dalej</translation>
    </message>
    <message>
        <source>@CreatePlaylist</source>
        <translation>Utwórz playlistę</translation>
    </message>
    <message>
        <source>@CurrentDateTime</source>
        <translation>Bieżąca data i godzina</translation>
    </message>
    <message>
        <source>@CustomTime</source>
        <translation>Inny</translation>
    </message>
    <message>
        <source>@CustomizeFontAndPositioning</source>
        <translation>Czcionka i położenie</translation>
    </message>
    <message>
        <source>@DefaultPlaylist</source>
        <translation>Zdjęcia</translation>
    </message>
    <message>
        <source>@Delete</source>
        <translation>Usuń</translation>
    </message>
    <message>
        <source>@DeviceWontTurnOffUntilYouStopPlayback</source>
        <translation>Urządzenie nie wyłączy się, dopóki trwa pokaz</translation>
    </message>
    <message>
        <source>@DisplayMode</source>
        <translation>Tryb wyświetlania</translation>
    </message>
    <message>
        <source>@FillScreen</source>
        <translation>Wypełnij ekran</translation>
    </message>
    <message>
        <source>@FitToScreenOnBlack</source>
        <translation>Na czarnym tle</translation>
    </message>
    <message>
        <source>@FlashDir</source>
        <translation>Urządzenie</translation>
    </message>
    <message>
        <source>@Font</source>
        <translation>Czcionka</translation>
    </message>
    <message>
        <source>@FrontLight</source>
        <translation>Podświetlenie</translation>
    </message>
    <message numerus="yes">
        <source>@Hour</source>
        <translation>
            <numerusform>godzina</numerusform>
            <numerusform>godziny</numerusform>
            <numerusform>godzin</numerusform>
        </translation>
    </message>
    <message>
        <source>@Hours</source>
        <translation>godziny</translation>
    </message>
    <message>
        <source>@Italic</source>
        <translation>Kursywa</translation>
    </message>
    <message>
        <source>@KA_menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>@KA_next</source>
        <translation>Następne zdjęcie</translation>
    </message>
    <message>
        <source>@KA_prev</source>
        <translation>Poprzednie zdjęcie</translation>
    </message>
    <message>
        <source>@KeyDone</source>
        <translation>Gotowe</translation>
    </message>
    <message>
        <source>@KeyLanguage</source>
        <translation>Język</translation>
    </message>
    <message>
        <source>@KeyShift</source>
        <translation>Shift</translation>
    </message>
    <message>
        <source>@KeySpace</source>
        <translation>Spacja</translation>
    </message>
    <message numerus="yes">
        <source>@Minute</source>
        <translation>
            <numerusform>minuta</numerusform>
            <numerusform>minuty</numerusform>
            <numerusform>minut</numerusform>
        </translation>
    </message>
    <message>
        <source>@MonthOfDay</source>
        <translation>%1</translation>
    </message>
    <message>
        <source>@New_playlist</source>
        <translation>Nowa playlista</translation>
    </message>
    <message>
        <source>@NextPage</source>
        <translation>Następna strona</translation>
    </message>
    <message>
        <source>@NoteThatEnablingFrontlightLeadsToFasterBatteryDraining</source>
        <translation>Podświetlenie szybciej wyczerpuje baterię</translation>
    </message>
    <message>
        <source>@OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>@OTG</source>
        <translation>Dysk USB</translation>
    </message>
    <message>
        <source>@PhotoCreatedDate</source>
        <translation>Data zdjęcia</translation>
    </message>
    <message>
        <source>@PhotoWasAddedToPlaylist</source>
        <translation>Dodano %s zdjęcie do „%s”</translation>
    </message>
    <message numerus="yes">
        <source>@PhotosWereAddedToPlaylist</source>
        <translation>
            <numerusform>Dodano %s zdjęcie do „%s”</numerusform>
            <numerusform>Dodano %s zdjęcia do „%s”</numerusform>
            <numerusform>Dodano %s zdjęć do „%s”</numerusform>
        </translation>
    </message>
    <message>
        <source>@PlayItem</source>
        <translation>Odtwórz</translation>
    </message>
    <message>
        <source>@Position</source>
        <translation>Położenie</translation>
    </message>
    <message>
        <source>@PreviousPage</source>
        <translation>Poprzednia strona</translation>
    </message>
    <message>
        <source>@Regular</source>
        <translation>Zwykła</translation>
    </message>
    <message>
        <source>@Rename</source>
        <translation>Zmień nazwę</translation>
    </message>
    <message>
        <source>@SDcard</source>
        <translation>Karta SD</translation>
    </message>
    <message>
        <source>@Save</source>
        <translation>Zapisz</translation>
    </message>
    <message numerus="yes">
        <source>@Second</source>
        <translation>
            <numerusform>sekunda</numerusform>
            <numerusform>sekundy</numerusform>
            <numerusform>sekund</numerusform>
        </translation>
    </message>
    <message>
        <source>@Second_2</source>
        <translation>s</translation>
    </message>
    <message>
        <source>@SelectBooks</source>
        <translation>Wybierz zdjęcia</translation>
    </message>
    <message>
        <source>@SelectMultiple</source>
        <translation>Wybierz kilka</translation>
    </message>
    <message>
        <source>@SetCustomInterval</source>
        <translation>Ustaw czas wyświetlania</translation>
    </message>
    <message>
        <source>@ShowAsGrid</source>
        <extracomment>Shows the pictures of a playlist as a grid; read aloud</extracomment>
        <translation>Pokaż jako siatkę</translation>
    </message>
    <message>
        <source>@ShowAsList</source>
        <extracomment>Shows the pictures of a playlist as a list; read aloud</extracomment>
        <translation>Pokaż jako listę</translation>
    </message>
    <message>
        <source>@ShowPhotoCreatedDate</source>
        <translation>Pokaż datę zdjęcia</translation>
    </message>
    <message>
        <source>@Show_panel_time</source>
        <translation>Pokaż datę i godzinę</translation>
    </message>
    <message>
        <source>@Shuffle</source>
        <translation>Losowa kolejność</translation>
    </message>
    <message>
        <source>@Size_B</source>
        <translation>B</translation>
    </message>
    <message>
        <source>@Size_GB</source>
        <translation>GB</translation>
    </message>
    <message>
        <source>@Size_KB</source>
        <translation>KB</translation>
    </message>
    <message>
        <source>@Size_MB</source>
        <translation>MB</translation>
    </message>
    <message>
        <source>@Size_TB</source>
        <translation>TB</translation>
    </message>
    <message>
        <source>@SlideshowSettings</source>
        <translation>Ustawienia pokazu</translation>
    </message>
    <message>
        <source>@StartPlayback</source>
        <translation>Rozpocznij pokaz</translation>
    </message>
    <message>
        <source>@StopSlideshow</source>
        <translation>Zakończ pokaz</translation>
    </message>
    <message>
        <source>@Storages</source>
        <translation>Nośniki</translation>
    </message>
    <message>
        <source>@Style</source>
        <translation>Styl</translation>
    </message>
    <message>
        <source>@ThereAreNoPicturesYet</source>
        <translation>Nie ma jeszcze zdjęć. Dotknij +, aby je dodać.</translation>
    </message>
    <message>
        <source>@ThereAreNoPlaylistsYet</source>
        <translation>Nie ma jeszcze playlist. Dotknij „Nowa playlista”, aby dodać.</translation>
    </message>
    <message>
        <source>@WhenPlaybackIsActiveTheDeviceWillNotAutomaticallyBeTurnedOff</source>
        <translation>Podczas pokazu nie wyłącza się automatycznie</translation>
    </message>
    <message>
        <source>@picture_stand</source>
        <translation>Ramka na zdjęcia</translation>
    </message>
</context>
</TS>
