<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru">
<context>
    <name>device</name>
    <message>
        <source>@1min</source>
        <translation>1&#xa0;мин</translation>
    </message>
    <message>
        <source>@2min</source>
        <translation>2&#xa0;мин</translation>
    </message>
    <message>
        <source>@5min</source>
        <translation>5&#xa0;мин</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningBottomLeft</source>
        <translation>Слева внизу</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningBottomRight</source>
        <translation>Справа внизу</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningTopLeft</source>
        <translation>Слева вверху</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningTopRight</source>
        <translation>Справа вверху</translation>
    </message>
    <message>
        <source>@AddPhotos</source>
        <translation>Добавить фото</translation>
    </message>
    <message>
        <source>@AddPhotosToPlaylist</source>
        <translation>Добавить фото в плейлист</translation>
    </message>
    <message>
        <source>@All</source>
        <translation>Все</translation>
    </message>
    <message>
        <source>@AutomaticBrightness</source>
        <translation>Автоматическая яркость</translation>
    </message>
    <message>
        <source>@AutomaticColorTemperature</source>
        <translation>Автоматический оттенок</translation>
    </message>
    <message>
        <source>@AvailableDiskSpace</source>
        <translation>Своб. %s&#xa;из %s</translation>
    </message>
    <message>
        <source>@Back</source>
        <extracomment>Leaves a playlist; read aloud</extracomment>
        <translation>Назад</translation>
    </message>
    <message>
        <source>@Bold</source>
        <translation>Жирный</translation>
    </message>
    <message>
        <source>@BoldItalic</source>
        <translation>Жирный курсив</translation>
    </message>
    <message>
        <source>@Brightness</source>
        <translation>Яркость</translation>
    </message>
    <message>
        <source>@Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>@ChangePictureEvery</source>
        <translation>Интервал показа</translation>
    </message>
    <message>
        <source>@Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>@ColorTemperature</source>
        <translation>Оттенок света</translation>
    </message>
    <message>
        <source>@Continue</source>
        <translation>Далее</translation>
    </message>
    <message>
        <source>@CreatePlaylist</source>
        <translation>Создать плейлист</translation>
    </message>
    <message>
        <source>@CurrentDateTime</source>
        <translation>Текущие дата и время</translation>
    </message>
    <message>
        <source>@CustomTime</source>
        <translation>Другой</translation>
    </message>
    <message>
        <source>@CustomizeFontAndPositioning</source>
        <translation>Шрифт и положение</translation>
    </message>
    <message>
        <source>@DefaultPlaylist</source>
        <translation>Фото</translation>
    </message>
    <message>
        <source>@Delete</source>
        <translation>Удалить</translation>
    </message>
    <message>
        <source>@DeviceWontTurnOffUntilYouStopPlayback</source>
        <translation>Устройство не выключится, пока идёт показ</translation>
    </message>
    <message>
        <source>@DisplayMode</source>
        <translation>Режим показа</translation>
    </message>
    <message>
        <source>@FillScreen</source>
        <translation>На весь экран</translation>
    </message>
    <message>
        <source>@FitToScreenOnBlack</source>
        <translation>На чёрном фоне</translation>
    </message>
    <message>
        <source>@FlashDir</source>
        <translation>Память</translation>
    </message>
    <message>
        <source>@Font</source>
        <translation>Шрифт</translation>
    </message>
    <message>
        <source>@FrontLight</source>
        <translation>Подсветка</translation>
    </message>
    <message numerus="yes">
        <source>@Hour</source>
        <translation>
            <numerusform>час</numerusform>
            <numerusform>часа</numerusform>
            <numerusform>часов</numerusform>
        </translation>
    </message>
    <message>
        <source>@Hours</source>
        <translation>часы</translation>
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
        <translation>Следующее фото</translation>
    </message>
    <message>
        <source>@KA_prev</source>
        <translation>Предыдущее фото</translation>
    </message>
    <message>
        <source>@KeyDone</source>
        <translation>Готово</translation>
    </message>
    <message>
        <source>@KeyLanguage</source>
        <translation>Язык</translation>
    </message>
    <message>
        <source>@KeyShift</source>
        <translation>Shift</translation>
    </message>
    <message>
        <source>@KeySpace</source>
        <translation>Пробел</translation>
    </message>
    <message numerus="yes">
        <source>@Minute</source>
        <translation>
            <numerusform>минута</numerusform>
            <numerusform>минуты</numerusform>
            <numerusform>минут</numerusform>
        </translation>
    </message>
    <message>
        <source>@MonthOfDay</source>
        <translation>%1</translation>
    </message>
    <message>
        <source>@New_playlist</source>
        <translation>Новый плейлист</translation>
    </message>
    <message>
        <source>@NextPage</source>
        <translation>Следующая страница</translation>
    </message>
    <message>
        <source>@NoteThatEnablingFrontlightLeadsToFasterBatteryDraining</source>
        <translation>С подсветкой батарея садится быстрее</translation>
    </message>
    <message>
        <source>@OK</source>
        <translation>ОК</translation>
    </message>
    <message>
        <source>@OTG</source>
        <translation>USB-диск</translation>
    </message>
    <message>
        <source>@PhotoCreatedDate</source>
        <translation>Дата съёмки</translation>
    </message>
    <message>
        <source>@PhotoWasAddedToPlaylist</source>
        <translation>Добавлено %s фото в «%s»</translation>
    </message>
    <message numerus="yes">
        <source>@PhotosWereAddedToPlaylist</source>
        <translation>
            <numerusform>Добавлено %s фото в «%s»</numerusform>
            <numerusform>Добавлено %s фото в «%s»</numerusform>
            <numerusform>Добавлено %s фото в «%s»</numerusform>
        </translation>
    </message>
    <message>
        <source>@PlayItem</source>
        <translation>Показать</translation>
    </message>
    <message>
        <source>@Position</source>
        <translation>Положение</translation>
    </message>
    <message>
        <source>@PreviousPage</source>
        <translation>Предыдущая страница</translation>
    </message>
    <message>
        <source>@Regular</source>
        <translation>Обычный</translation>
    </message>
    <message>
        <source>@Rename</source>
        <translation>Переименовать</translation>
    </message>
    <message>
        <source>@SDcard</source>
        <translation>Карта SD</translation>
    </message>
    <message>
        <source>@Save</source>
        <translation>Сохранить</translation>
    </message>
    <message numerus="yes">
        <source>@Second</source>
        <translation>
            <numerusform>секунда</numerusform>
            <numerusform>секунды</numerusform>
            <numerusform>секунд</numerusform>
        </translation>
    </message>
    <message>
        <source>@Second_2</source>
        <translation>сек</translation>
    </message>
    <message>
        <source>@SelectBooks</source>
        <translation>Выберите фото</translation>
    </message>
    <message>
        <source>@SelectMultiple</source>
        <translation>Выбрать несколько</translation>
    </message>
    <message>
        <source>@SetCustomInterval</source>
        <translation>Задать интервал</translation>
    </message>
    <message>
        <source>@ShowAsGrid</source>
        <extracomment>Shows the pictures of a playlist as a grid; read aloud</extracomment>
        <translation>Показать сеткой</translation>
    </message>
    <message>
        <source>@ShowAsList</source>
        <extracomment>Shows the pictures of a playlist as a list; read aloud</extracomment>
        <translation>Показать списком</translation>
    </message>
    <message>
        <source>@ShowPhotoCreatedDate</source>
        <translation>Показывать дату съёмки</translation>
    </message>
    <message>
        <source>@Show_panel_time</source>
        <translation>Показывать дату и время</translation>
    </message>
    <message>
        <source>@Shuffle</source>
        <translation>Случайный порядок</translation>
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
        <translation>Настройки показа</translation>
    </message>
    <message>
        <source>@StartPlayback</source>
        <translation>Начать показ</translation>
    </message>
    <message>
        <source>@StopSlideshow</source>
        <translation>Остановить показ</translation>
    </message>
    <message>
        <source>@Storages</source>
        <translation>Накопители</translation>
    </message>
    <message>
        <source>@Style</source>
        <translation>Стиль</translation>
    </message>
    <message>
        <source>@ThereAreNoPicturesYet</source>
        <translation>Фото пока нет. Нажмите +, чтобы добавить.</translation>
    </message>
    <message>
        <source>@ThereAreNoPlaylistsYet</source>
        <translation>Плейлистов пока нет. Нажмите «Новый плейлист».</translation>
    </message>
    <message>
        <source>@WhenPlaybackIsActiveTheDeviceWillNotAutomaticallyBeTurnedOff</source>
        <translation>Во время показа оно не выключается автоматически</translation>
    </message>
    <message>
        <source>@picture_stand</source>
        <translation>Фоторамка</translation>
    </message>
</context>
</TS>
