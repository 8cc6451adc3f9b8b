<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="uk">
<context>
    <name>device</name>
    <message>
        <source>@1min</source>
        <translation>1&#xa0;хв</translation>
    </message>
    <message>
        <source>@2min</source>
        <translation>2&#xa0;хв</translation>
    </message>
    <message>
        <source>@5min</source>
        <translation>5&#xa0;хв</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningBottomLeft</source>
        <translation>Ліворуч унизу</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningBottomRight</source>
        <translation>Праворуч унизу</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningTopLeft</source>
        <translation>Ліворуч угорі</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningTopRight</source>
        <translation>Праворуч угорі</translation>
    </message>
    <message>
        <source>@AddPhotos</source>
        <translation>Додати фото</translation>
    </message>
    <message>
        <source>@AddPhotosToPlaylist</source>
        <translation>Додати фото до плейлиста</translation>
    </message>
    <message>
        <source>@All</source>
        <translation>Усі</translation>
    </message>
    <message>
        <source>@AutomaticBrightness</source>
        <translation>Автоматична яскравість</translation>
    </message>
    <message>
        <source>@AutomaticColorTemperature</source>
        <translation>Автоматичний відтінок</translation>
    </message>
    <message>
        <source>@AvailableDiskSpace</source>
        <translation>Віл. %s&#xa;з %s</translation>
    </message>
    <message>
        <source>@Back</source>
        <extracomment>Leaves a playlist; read aloud</extracomment>
        <translation>Назад</translation>
    </message>
    <message>
        <source>@Bold</source>
        <translation>Жирний</translation>
    </message>
    <message>
        <source>@BoldItalic</source>
        <translation>Жирний курсив</translation>
    </message>
    <message>
        <source>@Brightness</source>
        <translation>Яскравість</translation>
    </message>
    <message>
        <source>@Cancel</source>
        <translation>Скасувати</translation>
    </message>
    <message>
        <source>@ChangePictureEvery</source>
        <translation>Інтервал показу</translation>
    </message>
    <message>
        <source>@Close</source>
        <translation>Закрити</translation>
    </message>
    <message>
        <source>@ColorTemperature</source>
        <translation>Відтінок світла</translation>
    </message>
    <message>
        <source>@Continue</source>
        <translation>Далі</translation>
    </message>
    <message>
        <source>@CreatePlaylist</source>
        <translation>Створити плейлист</translation>
    </message>
    <message>
        <source>@CurrentDateTime</source>
        <translation>Поточні дата й час</translation>
    </message>
    <message>
        <source>@CustomTime</source>
        <translation>Інший</translation>
    </message>
    <message>
        <source>@CustomizeFontAndPositioning</source>
        <translation>Шрифт і розташування</translation>
    </message>
    <message>
        <source>@DefaultPlaylist</source>
        <translation>Фото</translation>
    </message>
    <message>
        <source>@Delete</source>
        <translation>Видалити</translation>
    </message>
    <message>
        <source>@DeviceWontTurnOffUntilYouStopPlayback</source>
        <translation>Пристрій не вимкнеться, доки триває показ</translation>
    </message>
    <message>
        <source>@DisplayMode</source>
        <translation>Режим показу</translation>
    </message>
    <message>
        <source>@FillScreen</source>
        <translation>На весь екран</translation>
    </message>
    <message>
        <source>@FitToScreenOnBlack</source>
        <translation>На чорному тлі</translation>
    </message>
    <message>
        <source>@FlashDir</source>
        <translation>Пристрій</translation>
    </message>
    <message>
        <source>@Font</source>
        <translation>Шрифт</translation>
    </message>
    <message>
        <source>@FrontLight</source>
        <translation>Підсвічування</translation>
    </message>
    <message numerus="yes">
        <source>@Hour</source>
        <translation>
            <numerusform>година</numerusform>
            <numerusform>години</numerusform>
            <numerusform>годин</numerusform>
        </translation>
    </message>
    <message>
        <source>@Hours</source>
        <translation>години</translation>
    </message>
    <message>
        <source>@Italic</source>
        <translation>Курсив</translation>
    </message>
    <message>
        <source>@KA_menu</source>
        <translation>Меню</translation>
    </message>
    <message>
        <source>@KA_next</source>
        <translation>Наступне фото</translation>
    </message>
    <message>
        <source>@KA_prev</source>
        <translation>Попереднє фото</translation>
    </message>
    <message>
        <source>@KeyDone</source>
        <translation>Готово</translation>
    </message>
    <message>
        <source>@KeyLanguage</source>
        <translation>Мова</translation>
    </message>
    <message>
        <source>@KeyShift</source>
        <translation>Shift</translation>
    </message>
    <message>
        <source>@KeySpace</source>
        <translation>Пробіл</translation>
    </message>
    <message numerus="yes">
        <source>@Minute</source>
        <translation>
            <numerusform>хвилина</numerusform>
            <numerusform>хвилини</numerusform>
            <numerusform>хвилин</numerusform>
        </translation>
    </message>
    <message>
        <source>@MonthOfDay</source>
        <translation>%1</translation>
    </message>
    <message>
        <source>@New_playlist</source>
        <translation>Новий плейлист</translation>
    </message>
    <message>
        <source>@NextPage</source>
        <translation>Наступна сторінка</translation>
    </message>
    <message>
        <source>@NoteThatEnablingFrontlightLeadsToFasterBatteryDraining</source>
        <translation>З підсвічуванням батарея сідає швидше</translation>
    </message>
    <message>
        <source>@OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>@OTG</source>
        <translation>USB-диск</translation>
    </message>
    <message>
        <source>@PhotoCreatedDate</source>
        <translation>Дата знімка</translation>
    </message>
    <message>
        <source>@PhotoWasAddedToPlaylist</source>
        <translation>Додано %s фото до «%s»</translation>
    </message>
    <message numerus="yes">
        <source>@PhotosWereAddedToPlaylist</source>
        <translation>
            <numerusform>Додано %s фото до «%s»</numerusform>
            <numerusform>Додано %s фото до «%s»</numerusform>
            <numerusform>Додано %s фото до «%s»</numerusform>
        </translation>
    </message>
    <message>
        <source>@PlayItem</source>
        <translation>Показати</translation>
    </message>
    <message>
        <source>@Position</source>
        <translation>Розташування</translation>
    </message>
    <message>
        <source>@PreviousPage</source>
        <translation>Попередня сторінка</translation>
    </message>
    <message>
        <source>@Regular</source>
        <translation>Звичайний</translation>
    </message>
    <message>
        <source>@Rename</source>
        <translation>Перейменувати</translation>
    </message>
    <message>
        <source>@SDcard</source>
        <translation>Карта SD</translation>
    </message>
    <message>
        <source>@Save</source>
        <translation>Зберегти</translation>
    </message>
    <message numerus="yes">
        <source>@Second</source>
        <translation>
            <numerusform>секунда</numerusform>
            <numerusform>секунди</numerusform>
            <numerusform>секунд</numerusform>
        </translation>
    </message>
    <message>
        <source>@Second_2</source>
        <translation>сек</translation>
    </message>
    <message>
        <source>@SelectBooks</source>
        <translation>Виберіть фото</translation>
    </message>
    <message>
        <source>@SelectMultiple</source>
        <translation>Вибрати кілька</translation>
    </message>
    <message>
        <source>@SetCustomInterval</source>
        <translation>Задати інтервал</translation>
    </message>
    <message>
        <source>@ShowAsGrid</source>
        <extracomment>Shows the pictures of a playlist as a grid; read aloud</extracomment>
        <translation>Показати сіткою</translation>
    </message>
    <message>
        <source>@ShowAsList</source>
        <extracomment>Shows the pictures of a playlist as a list; read aloud</extracomment>
        <translation>Показати списком</translation>
    </message>
    <message>
        <source>@ShowPhotoCreatedDate</source>
        <translation>Показувати дату знімка</translation>
    </message>
    <message>
        <source>@Show_panel_time</source>
        <translation>Показувати дату й час</translation>
    </message>
    <message>
        <source>@Shuffle</source>
        <translation>Випадковий порядок</translation>
    </message>
    <message>
        <source>@Size_B</source>
        <translation>Б</translation>
    </message>
    <message>
        <source>@Size_GB</source>
        <translation>ГБ</translation>
    </message>
    <message>
        <source>@Size_KB</source>
        <translation>КБ</translation>
    </message>
    <message>
        <source>@Size_MB</source>
        <translation>МБ</translation>
    </message>
    <message>
        <source>@Size_TB</source>
        <translation>ТБ</translation>
    </message>
    <message>
        <source>@SlideshowSettings</source>
        <translation>Налаштування показу</translation>
    </message>
    <message>
        <source>@StartPlayback</source>
        <translation>Почати показ</translation>
    </message>
    <message>
        <source>@StopSlideshow</source>
        <translation>Зупинити показ</translation>
    </message>
    <message>
        <source>@Storages</source>
        <translation>Сховища</translation>
    </message>
    <message>
        <source>@Style</source>
        <translation>Стиль</translation>
    </message>
    <message>
        <source>@ThereAreNoPicturesYet</source>
        <translation>Фото ще немає. Торкніться +, щоб додати.</translation>
    </message>
    <message>
        <source>@ThereAreNoPlaylistsYet</source>
        <translation>Плейлистів ще немає. Торкніться «Новий плейлист».</translation>
    </message>
    <message>
        <source>@WhenPlaybackIsActiveTheDeviceWillNotAutomaticallyBeTurnedOff</source>
        <translation>Під час показу він не вимикається автоматично</translation>
    </message>
    <message>
        <source>@picture_stand</source>
        <translation>Фоторамка</translation>
    </message>
</context>
</TS>
