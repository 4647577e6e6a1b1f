<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU" sourcelanguage="en">
<context>
    <name>CInterface</name>
    <message>
        <source>%1 is no folder</source>
        <translation>%1 не является папкой</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>не удалось прочитать %1: %2</translation>
    </message>
    <message>
        <source>The window of the host cannot be used on this screen</source>
        <translation>Окно вызывающей программы нельзя использовать на этом экране</translation>
    </message>
    <message>
        <source>The recorder has refused the command</source>
        <translation>Регистратор отклонил команду</translation>
    </message>
    <message>
        <source>An argument of the call makes no sense</source>
        <translation>Недопустимый аргумент вызова</translation>
    </message>
    <message>
        <source>There is no connection to the recorder, or it does not answer</source>
        <translation>Нет соединения с регистратором, или он не отвечает</translation>
    </message>
    <message>
        <source>The recorder has refused the login</source>
        <translation>Регистратор отклонил вход</translation>
    </message>
    <message>
        <source>A file of this computer could not be read or written</source>
        <translation>Не удалось прочитать или записать файл этого компьютера</translation>
    </message>
    <message>
        <source>The data make no sense</source>
        <translation>Данные не имеют смысла</translation>
    </message>
    <message>
        <source>Given up</source>
        <translation>Прервано</translation>
    </message>
    <message>
        <source>The handle was destroyed or never created</source>
        <translation>Дескриптор уничтожен или не был создан</translation>
    </message>
    <message>
        <source>Not possible during an exchange or in a callback</source>
        <translation>Невозможно во время обмена и в обратном вызове</translation>
    </message>
    <message>
        <source>There is no such value, file or function</source>
        <translation>Нет такого значения, файла или функции</translation>
    </message>
    <message>
        <source>The buffer is too small</source>
        <translation>Буфер слишком мал</translation>
    </message>
    <message>
        <source>There is no screen, or the process has no windows</source>
        <translation>Нет экрана, или у процесса нет окон</translation>
    </message>
    <message>
        <source>A mistake in the library</source>
        <translation>Ошибка в библиотеке</translation>
    </message>
    <message>
        <source>The login or the password has letters that this computer cannot send.</source>
        <translation>В логине или пароле есть буквы, которые этот компьютер не может передать.</translation>
    </message>
</context>
<context>
    <name>CWinMain</name>
    <message>
        <source>Paravue Setup</source>
        <translation>Paravue Setup</translation>
    </message>
    <message>
        <source>Save the settings</source>
        <translation>Сохранить настройки</translation>
    </message>
    <message>
        <source>Get the report</source>
        <translation>Получить отчёт</translation>
    </message>
    <message>
        <source>Install the package</source>
        <translation>Установить пакет</translation>
    </message>
    <message>
        <source>Remove the package</source>
        <translation>Удалить пакет</translation>
    </message>
    <message>
        <source>Restart the recorder</source>
        <translation>Перезагрузить регистратор</translation>
    </message>
    <message>
        <source>Reset the settings</source>
        <translation>Сбросить настройки</translation>
    </message>
    <message>
        <source>Format the USB disk</source>
        <translation>Форматировать USB-диск</translation>
    </message>
    <message>
        <source>Format disk 1</source>
        <translation>Форматировать диск 1</translation>
    </message>
    <message>
        <source>Format disk 2</source>
        <translation>Форматировать диск 2</translation>
    </message>
    <message>
        <source>Clear the e-mails on the USB disk</source>
        <translation>Удалить письма с USB-диска</translation>
    </message>
    <message>
        <source>Clear the e-mails on disk 1</source>
        <translation>Удалить письма с диска 1</translation>
    </message>
    <message>
        <source>Clear the e-mails on disk 2</source>
        <translation>Удалить письма с диска 2</translation>
    </message>
    <message>
        <source>Set the clock</source>
        <translation>Установить часы</translation>
    </message>
    <message>
        <source>Set the clock from the time server</source>
        <translation>Установить часы по серверу времени</translation>
    </message>
    <message>
        <source>Send a test e-mail</source>
        <translation>Отправить пробное письмо</translation>
    </message>
    <message>
        <source>Everything on the USB disk is lost.</source>
        <translation>Всё содержимое USB-диска будет потеряно.</translation>
    </message>
    <message>
        <source>All recordings on disk 1 are lost.</source>
        <translation>Все записи на диске 1 будут потеряны.</translation>
    </message>
    <message>
        <source>All recordings on disk 2 are lost.</source>
        <translation>Все записи на диске 2 будут потеряны.</translation>
    </message>
    <message>
        <source>All e-mails on the USB disk are lost.</source>
        <translation>Все письма на USB-диске будут потеряны.</translation>
    </message>
    <message>
        <source>All e-mails on disk 1 are lost.</source>
        <translation>Все письма на диске 1 будут потеряны.</translation>
    </message>
    <message>
        <source>All e-mails on disk 2 are lost.</source>
        <translation>Все письма на диске 2 будут потеряны.</translation>
    </message>
    <message>
        <source>All settings of the recorder are lost.</source>
        <translation>Все настройки регистратора будут потеряны.</translation>
    </message>
    <message>
        <source>The package and what it does are removed from the recorder.</source>
        <translation>Пакет и его функции будут удалены из регистратора.</translation>
    </message>
    <message>
        <source>The actions of the interface description do not come to an end</source>
        <translation>Действия описания интерфейса не завершаются</translation>
    </message>
    <message>
        <source>Unknown control type action &quot;%1&quot;</source>
        <translation>Неизвестный тип действия «%1»</translation>
    </message>
    <message>
        <source>A text of the interface description is too large: &quot;%1&quot;</source>
        <translation>Слишком длинный текст в описании интерфейса: «%1»</translation>
    </message>
    <message>
        <source>The interface description is too large; a part of it is not shown</source>
        <translation>Описание интерфейса слишком велико; его часть не показана</translation>
    </message>
    <message>
        <source>From %1 to %2</source>
        <translation>От %1 до %2</translation>
    </message>
    <message>
        <source>At least %1</source>
        <translation>Не менее %1</translation>
    </message>
    <message>
        <source>At most %1</source>
        <translation>Не более %1</translation>
    </message>
    <message>
        <source>A value is needed here</source>
        <translation>Здесь нужно значение</translation>
    </message>
    <message>
        <source>Outside of the range: %1</source>
        <translation>Вне допустимых пределов: %1</translation>
    </message>
    <message>
        <source>Not a number: %1</source>
        <translation>Не число: %1</translation>
    </message>
    <message>
        <source>Required</source>
        <translation>Обязательно</translation>
    </message>
    <message>
        <source>Nothing stored</source>
        <translation>Значение не задано</translation>
    </message>
    <message>
        <source>No value is stored here, and none will be until you edit the field</source>
        <translation>Значение не задано и не появится, пока вы не измените поле</translation>
    </message>
    <message>
        <source>Another value stored</source>
        <translation>Хранится другое значение</translation>
    </message>
    <message>
        <source>The field cannot show the stored value, which stays until you edit the field</source>
        <translation>Поле не может показать хранимое значение; оно останется, пока вы не измените поле</translation>
    </message>
    <message>
        <source>Stored: %1</source>
        <translation>Хранится: %1</translation>
    </message>
    <message>
        <source>The field cannot show the stored value &quot;%1&quot;, which stays until you edit the field</source>
        <translation>Поле не может показать хранимое значение «%1»; оно останется, пока вы не измените поле</translation>
    </message>
    <message>
        <source>Unknown dialog tag &quot;%1&quot;</source>
        <translation>Неизвестный тег диалога «%1»</translation>
    </message>
    <message>
        <source>Too many dialogs are open at the same time</source>
        <translation>Открыто слишком много диалогов одновременно</translation>
    </message>
    <message>
        <source>Wrong %0 param &quot;%1&quot;</source>
        <translation>Неверный параметр %0: «%1»</translation>
    </message>
    <message>
        <source>Wrong %0 action &quot;%1&quot;</source>
        <translation>Неверное действие %0: «%1»</translation>
    </message>
    <message>
        <source>Can&apos;t open file&quot;%1&quot;</source>
        <translation>Не удалось открыть файл «%1»</translation>
    </message>
    <message>
        <source>PNG pictures (*.png)</source>
        <translation>Изображения PNG (*.png)</translation>
    </message>
    <message>
        <source>JPEG pictures (*.jpg)</source>
        <translation>Изображения JPEG (*.jpg)</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>Сохранить изображение</translation>
    </message>
    <message>
        <source>These settings hold characters that the file cannot hold, and are not in it: %1</source>
        <translation>В этих настройках есть символы, которые нельзя записать в файл, поэтому их в нём нет: %1</translation>
    </message>
    <message>
        <source>File &quot;%1&quot; is too large</source>
        <translation>Файл «%1» слишком велик</translation>
    </message>
    <message>
        <source>The patterns of &quot;%1&quot; take too long</source>
        <translation>Шаблоны «%1» обрабатываются слишком долго</translation>
    </message>
    <message>
        <source>Wrong arguments %1(%2)</source>
        <translation>Неверные аргументы %1(%2)</translation>
    </message>
    <message>
        <source>Unknown %1 tag &quot;%2&quot;</source>
        <translation>Неизвестный тег %1: «%2»</translation>
    </message>
    <message>
        <source>No list of packages has the tag &quot;%1&quot;</source>
        <translation>Нет списка пакетов с тегом «%1»</translation>
    </message>
    <message>
        <source>No list of users has the tag &quot;%1&quot;</source>
        <translation>Нет списка пользователей с тегом «%1»</translation>
    </message>
    <message>
        <source>The list of users is not complete, so it cannot be changed</source>
        <translation>Список пользователей неполон, поэтому изменить его нельзя</translation>
    </message>
    <message>
        <source>No user is selected</source>
        <translation>Пользователь не выбран</translation>
    </message>
    <message>
        <source>The password has letters that this computer cannot send.</source>
        <translation>В пароле есть буквы, которые этот компьютер не может передать.</translation>
    </message>
    <message>
        <source>There are changes that were not sent to the recorder. Refresh all the same, and lose them?</source>
        <translation>Есть изменения, не отправленные в регистратор. Всё равно обновить и потерять их?</translation>
    </message>
    <message>
        <source>%1 is not an Paravue Setup config file.</source>
        <translation>%1 не является файлом конфигурации Paravue Setup.</translation>
    </message>
    <message>
        <source>%1 file version is not 1.0</source>
        <translation>Версия файла %1 отличается от 1.0</translation>
    </message>
    <message>
        <source>Cannot read file %1</source>
        <translation>Не удалось прочитать файл %1</translation>
    </message>
    <message>
        <source>%1:%2.%3
%4</source>
        <translation>%1:%2.%3
%4</translation>
    </message>
    <message>
        <source>Unknown node type &quot;%1&quot;</source>
        <translation>Неизвестный тип узла «%1»</translation>
    </message>
    <message>
        <source>A stretch of row or column %1 is beyond the limits of a grid and was left out</source>
        <translation>Растяжение строки или столбца %1 выходит за пределы сетки и пропущено</translation>
    </message>
    <message>
        <source>Unknown control type &quot;%1&quot;</source>
        <translation>Неизвестный тип элемента управления «%1»</translation>
    </message>
    <message>
        <source>A control at row %1, column %2 is beyond the limits of a grid and was left out</source>
        <translation>Элемент управления в строке %1, столбце %2 выходит за пределы сетки и пропущен</translation>
    </message>
    <message>
        <source>The interface description has more than %1 time tasks</source>
        <translation>В описании интерфейса больше %1 периодических задач</translation>
    </message>
    <message>
        <source>Unknown time task &quot;%1&quot;</source>
        <translation>Неизвестная периодическая задача «%1»</translation>
    </message>
    <message>
        <source>No report of this disk</source>
        <translation>Нет отчёта об этом диске</translation>
    </message>
    <message>
        <source>Health: %1%
Hours in use: %2
Reallocated sectors: %3</source>
        <translation>Состояние: %1%
Часов работы: %2
Переназначенных секторов: %3</translation>
    </message>
    <message>
        <source>No entries</source>
        <translation>Нет записей</translation>
    </message>
    <message>
        <source>A list has %1 rows; only the first %2 are shown</source>
        <translation>Строк в списке: %1; показаны только первые %2</translation>
    </message>
    <message>
        <source>Package</source>
        <translation>Пакет</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Версия</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Описание</translation>
    </message>
    <message>
        <source>Priority</source>
        <translation>Приоритет</translation>
    </message>
    <message>
        <source>User</source>
        <translation>Пользователь</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Уровень</translation>
    </message>
    <message>
        <source>The recorder wants to write this file of your computer:

%1

Allow it? A file that is there already will be replaced.</source>
        <translation>Регистратор хочет записать этот файл на вашем компьютере:

%1

Разрешить? Если такой файл уже есть, он будет заменён.</translation>
    </message>
    <message>
        <source>The recorder wants to read this file of your computer:

%1

Allow it? Its content may be sent to the recorder.</source>
        <translation>Регистратор хочет прочитать этот файл на вашем компьютере:

%1

Разрешить? Его содержимое может быть отправлено в регистратор.</translation>
    </message>
    <message>
        <source>While the recorder restarts it records nothing and shows no pictures.</source>
        <translation>Во время перезагрузки регистратор не ведёт запись и не показывает изображений.</translation>
    </message>
    <message>
        <source>What it removes from the recorder is lost.</source>
        <translation>То, что будет удалено из регистратора, восстановить нельзя.</translation>
    </message>
    <message>
        <source>%1?&lt;br&gt;Recorder: %2</source>
        <translation>%1?&lt;br&gt;Регистратор: %2</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>Changed</source>
        <translation>Изменено</translation>
    </message>
    <message>
        <source>it is no number</source>
        <translation>это не число</translation>
    </message>
    <message>
        <source>it is below %1</source>
        <translation>оно меньше %1</translation>
    </message>
    <message>
        <source>it is above %1</source>
        <translation>оно больше %1</translation>
    </message>
    <message>
        <source>it must not be empty</source>
        <translation>оно не может быть пустым</translation>
    </message>
    <message>
        <source>it does not fit the pattern %1</source>
        <translation>оно не соответствует шаблону %1</translation>
    </message>
    <message>
        <source>it does not fit the mask %1</source>
        <translation>оно не соответствует маске %1</translation>
    </message>
    <message>
        <source>it is none of %1</source>
        <translation>оно не из числа %1</translation>
    </message>
    <message>
        <source>it is no time such as 20240131235900</source>
        <translation>это не время вида 20240131235900</translation>
    </message>
    <message>
        <source>Number of users</source>
        <translation>Число пользователей</translation>
    </message>
    <message>
        <source>User %1: name</source>
        <translation>Пользователь %1: имя</translation>
    </message>
    <message>
        <source>User %1: password</source>
        <translation>Пользователь %1: пароль</translation>
    </message>
    <message>
        <source>User %1: level</source>
        <translation>Пользователь %1: уровень</translation>
    </message>
</context>
<context>
    <name>CheckReport</name>
    <message>
        <source>errors: %1, warnings: %2</source>
        <translation>ошибок: %1, предупреждений: %2</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>не удалось прочитать %1: %2</translation>
    </message>
    <message>
        <source>%1 is no folder</source>
        <translation>%1 не является папкой</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>
Exit code:
  0  the window was accepted, all pictures were saved, or the
     checked description has no errors
  1  the window was rejected, the recorder has refused a command, or
     the checked description has errors
  2  the command line was wrong, or there is no screen
  3  no connection to the recorder, or no answer in time
  4  the recorder has refused the login
  6  a file or a program of this computer could not be used
  7  the recorder&apos;s answer or a description makes no sense
  8  stopped by a signal, or in the middle of a save
</source>
        <translation>
Код завершения:
  0  окно закрыто кнопкой OK, все изображения сохранены или
     в проверенном описании нет ошибок
  1  окно закрыто без OK, регистратор отклонил команду или
     в проверенном описании есть ошибки
  2  неверная командная строка или нет экрана
  3  нет связи с регистратором или нет ответа в срок
  4  регистратор отклонил вход
  6  не удалось использовать файл или программу этого компьютера
  7  ответ регистратора или описание не имеет смысла
  8  остановлено сигналом или во время сохранения
</translation>
    </message>
    <message>
        <source>Show this help.</source>
        <translation>Показать эту справку.</translation>
    </message>
    <message>
        <source>Show the version.</source>
        <translation>Показать версию.</translation>
    </message>
    <message>
        <source>The password in ADDRESS is the one that a user types: send its digest. Otherwise it is sent as it stands.</source>
        <translation>Пароль в ADDRESS записан так, как его вводит пользователь: отправлять его хеш. Иначе он отправляется как есть.</translation>
    </message>
    <message>
        <source>Start the recorder simulator and set that up.</source>
        <translation>Запустить имитатор регистратора и настраивать его.</translation>
    </message>
    <message>
        <source>Keep the simulator&apos;s files in DIR (with --demo).</source>
        <translation>Хранить файлы имитатора в DIR (вместе с --demo).</translation>
    </message>
    <message>
        <source>Simulate the recorder MODEL (with --demo): standard, everything or patrol.</source>
        <translation>Имитировать регистратор модели MODEL (вместе с --demo): standard, everything или patrol.</translation>
    </message>
    <message>
        <source>Save a picture of every tab in DIR once all is loaded, and end.</source>
        <translation>После загрузки сохранить изображение каждой вкладки в DIR и завершить работу.</translation>
    </message>
    <message>
        <source>Show the window in LANGUAGE, one of those that the recorder knows (such as en or ru). It counts as an edit, so saving keeps it.</source>
        <translation>Показать окно на языке LANGUAGE, одном из известных регистратору (например, en или ru). Это считается изменением и попадает в сохранённые настройки.</translation>
    </message>
    <message>
        <source>Show the window in the colours STYLE: light, dark, or system (as the desktop asks for, which is the usual one).</source>
        <translation>Показать окно в цветах STYLE: light (светлых), dark (тёмных) или system (как на рабочем столе; так по умолчанию).</translation>
    </message>
    <message>
        <source>Wait SECONDS for the connection and for each answer of the recorder; 0 is for ever (without it 12 for the connection, and with --screenshot 60 for an answer).</source>
        <translation>Ждать соединения и каждого ответа регистратора SECONDS секунд; 0 — без ограничения (по умолчанию 12 для соединения, а с --screenshot 60 для ответа).</translation>
    </message>
    <message>
        <source>Write what happens to FILE, behind what it holds: connections, commands, changed settings, messages. It gets no passwords and no values.</source>
        <translation>Дописывать в FILE всё, что происходит: соединения, команды, изменённые настройки, сообщения. Пароли и значения туда не попадают.</translation>
    </message>
    <message>
        <source>List the problems of the interface description FILE (- for the standard input), without a recorder.</source>
        <translation>Перечислить ошибки описания интерфейса FILE (- для стандартного ввода) без регистратора.</translation>
    </message>
    <message>
        <source>Print them for other programs (with --check).</source>
        <translation>Вывести их в виде для других программ (вместе с --check).</translation>
    </message>
    <message>
        <source>Show the window that the interface description FILE describes, on copies of local files: nothing is sent anywhere, and no file is changed.</source>
        <translation>Показать окно по описанию интерфейса FILE на копиях локальных файлов: ничего никуда не отправляется, файлы не изменяются.</translation>
    </message>
    <message>
        <source>Take the configuration files that go with FILE from DIR (with --check or --preview).</source>
        <translation>Взять файлы конфигурации для FILE из DIR (вместе с --check или --preview).</translation>
    </message>
    <message>
        <source>Edit the snapshot FILE without a recorder. Saving keeps the edits in FILE, beside what the recorder had.</source>
        <translation>Править снимок настроек FILE без регистратора. При сохранении правка остаётся в FILE рядом с тем, что было в регистраторе.</translation>
    </message>
    <message>
        <source>Set up the recorder ADDRESS, and offer the edits in the snapshot to be taken over (with --open).</source>
        <translation>Настроить регистратор ADDRESS и предложить перенести в него правку из снимка (вместе с --open).</translation>
    </message>
    <message>
        <source>Keep passwords too in the snapshots of recorders, and in FILE (with --open).</source>
        <translation>Хранить в снимках настроек, а с --open и в FILE, также пароли.</translation>
    </message>
    <message>
        <source>Print the RELAX NG schema of interface descriptions, for XML editors.</source>
        <translation>Вывести схему RELAX NG описаний интерфейса для редакторов XML.</translation>
    </message>
    <message>
        <source>List the time zones of the world with the rules that recorders take for them (in Russian with --language ru).</source>
        <translation>Перечислить часовые пояса мира с их правилами для регистраторов (по-русски с --language ru).</translation>
    </message>
    <message>
        <source>--%1 needs a value</source>
        <translation>для --%1 нужно значение</translation>
    </message>
    <message>
        <source>--timeout takes a number of seconds from 0 to %1</source>
        <translation>--timeout принимает число секунд от 0 до %1</translation>
    </message>
    <message>
        <source>--style takes light, dark or system</source>
        <translation>--style принимает light, dark или system</translation>
    </message>
    <message>
        <source>a language is a name such as en</source>
        <translation>язык задаётся именем, например en</translation>
    </message>
    <message>
        <source>--check and --preview exclude each other</source>
        <translation>--check и --preview исключают друг друга</translation>
    </message>
    <message>
        <source>--check and --preview read a file and take no recorder</source>
        <translation>--check и --preview читают файл, регистратор с ними не указывают</translation>
    </message>
    <message>
        <source>--check opens no window; use --preview</source>
        <translation>--check не открывает окна; используйте --preview</translation>
    </message>
    <message>
        <source>--files needs --check or --preview</source>
        <translation>для --files нужен --check или --preview</translation>
    </message>
    <message>
        <source>--json needs --check</source>
        <translation>для --json нужен --check</translation>
    </message>
    <message>
        <source>--send-to needs --open</source>
        <translation>для --send-to нужен --open</translation>
    </message>
    <message>
        <source>--open excludes --check, --preview and --demo</source>
        <translation>--open исключает --check, --preview и --demo</translation>
    </message>
    <message>
        <source>--open reads a file and takes no recorder; use --send-to</source>
        <translation>--open читает файл, регистратор с ним не указывают; используйте --send-to</translation>
    </message>
    <message>
        <source>--send-to asks, so that there are no pictures of it</source>
        <translation>--send-to задаёт вопросы, поэтому изображений с ним не бывает</translation>
    </message>
    <message>
        <source>--demo brings its own recorder and takes no address</source>
        <translation>--demo запускает свой регистратор, адрес с ним не указывают</translation>
    </message>
    <message>
        <source>--%1 needs --demo</source>
        <translation>для --%1 нужен --demo</translation>
    </message>
    <message>
        <source>no address was given</source>
        <translation>адрес не указан</translation>
    </message>
    <message>
        <source>more than one address was given</source>
        <translation>указано больше одного адреса</translation>
    </message>
    <message>
        <source>Shows the setup window of a network video recorder.</source>
        <translation>Показывает окно настройки сетевого видеорегистратора.</translation>
    </message>
    <message>
        <source>The recorder: [login:password@]host[:port]. Without a login the remembered one is used.</source>
        <translation>Регистратор: [login:password@]host[:port]. Без имени для входа берётся запомненное.</translation>
    </message>
</context>
<context>
    <name>ControlText</name>
    <message>
        <source>%1 exists; --force overwrites it</source>
        <translation>%1 уже есть; --force его заменит</translation>
    </message>
    <message>
        <source>Commands:</source>
        <translation>Команды:</translation>
    </message>
    <message>
        <source>%1 is not for the command %2</source>
        <translation>%1 не относится к команде %2</translation>
    </message>
    <message>
        <source>%1 needs a value</source>
        <translation>для %1 нужно значение</translation>
    </message>
    <message>
        <source>the login is given in the address or by options</source>
        <translation>логин задаётся в адресе или параметрами</translation>
    </message>
    <message>
        <source>What to do; see below.</source>
        <translation>Что сделать, см. ниже.</translation>
    </message>
    <message>
        <source>The recorder.</source>
        <translation>Регистратор.</translation>
    </message>
    <message>
        <source>What the command takes.</source>
        <translation>То, что нужно команде.</translation>
    </message>
    <message>
        <source>no command was given</source>
        <translation>не указана команда</translation>
    </message>
    <message>
        <source>there is no command &quot;%1&quot;</source>
        <translation>команды «%1» нет</translation>
    </message>
    <message>
        <source>no address was given</source>
        <translation>не указан адрес</translation>
    </message>
    <message>
        <source>too many arguments: %1 takes %2</source>
        <translation>слишком много аргументов: для %1 указывается %2</translation>
    </message>
    <message>
        <source>--timeout takes a number from 1 to %1</source>
        <translation>для --timeout указывается число от 1 до %1</translation>
    </message>
    <message>
        <source>--retries takes a number from 0 to %1</source>
        <translation>для --retries указывается число от 0 до %1</translation>
    </message>
    <message>
        <source>Prints the values that a PATTERN names, or all.</source>
        <translation>Выводит значения, которые называет PATTERN, или все.</translation>
    </message>
    <message>
        <source>Sets values, sends the files that they are in and compares what the recorder has then.</source>
        <translation>Задаёт значения, отправляет файлы с ними и сравнивает с тем, что стало в регистраторе.</translation>
    </message>
    <message>
        <source>Keeps the settings as a snapshot, among those of the setup window or in a file.</source>
        <translation>Сохраняет снимок настроек среди снимков окна настройки или в файл.</translation>
    </message>
    <message>
        <source>Show this help.</source>
        <translation>Показать эту справку.</translation>
    </message>
    <message>
        <source>Show the version.</source>
        <translation>Показать версию.</translation>
    </message>
    <message>
        <source>Log in with this name (without it the remembered one, or admin).</source>
        <translation>Входить с этим логином (без параметра — с запомненным или admin).</translation>
    </message>
    <message>
        <source>The password as it is typed is the first line of FILE, which only its owner may read.</source>
        <translation>Пароль, как его вводят, — первая строка файла FILE, который может читать только его владелец.</translation>
    </message>
    <message>
        <source>The password in ADDRESS is the one that a user types: send its digest. Otherwise it is sent as it stands.</source>
        <translation>Пароль в ADDRESS — тот, что вводит пользователь: отправлять его хеш. Иначе он отправляется как есть.</translation>
    </message>
    <message>
        <source>Wait for the recorder no longer than this (without it 15).</source>
        <translation>Ждать регистратор не дольше (без параметра 15).</translation>
    </message>
    <message>
        <source>Fetch again so often when there is no connection or no answer (without it 0).</source>
        <translation>Сколько раз повторить получение, если нет связи или ответа (без параметра 0).</translation>
    </message>
    <message>
        <source>Print for other programs.</source>
        <translation>Вывести в виде для других программ.</translation>
    </message>
    <message>
        <source>Print passwords and the like, or keep them in the snapshot. Otherwise they are left out.</source>
        <translation>Выводить пароли и подобное или хранить их в снимке. Иначе они опускаются.</translation>
    </message>
    <message>
        <source>Set what FILE says, too: a line KEY=VALUE for each value.</source>
        <translation>Задать и то, что указано в FILE: по строке KEY=VALUE на значение.</translation>
    </message>
    <message>
        <source>Show what would be sent, and send nothing.</source>
        <translation>Показать, что было бы отправлено, и ничего не отправлять.</translation>
    </message>
    <message>
        <source>Reads, sets and keeps the settings of a network video recorder without a window.</source>
        <translation>Читает, задаёт и сохраняет настройки сетевого видеорегистратора без окна.</translation>
    </message>
    <message>
        <source>the recorder has no value that fits %1</source>
        <translation>в регистраторе нет значения для %1</translation>
    </message>
    <message>
        <source>Password of %1 at %2: </source>
        <translation>Пароль %1 на %2: </translation>
    </message>
    <message>
        <source>cannot read %1: %2</source>
        <translation>не удалось прочитать %1: %2</translation>
    </message>
    <message>
        <source>other users may read %1, so it is not used; chmod 600 helps</source>
        <translation>%1 могут читать другие пользователи, поэтому файл не используется; поможет chmod 600</translation>
    </message>
    <message>
        <source>the password has letters that this computer&apos;s encoding lacks</source>
        <translation>в пароле есть буквы, которых нет в кодировке этого компьютера</translation>
    </message>
    <message>
        <source>warning: other users of this computer can see the password in the address</source>
        <translation>внимание: другие пользователи этого компьютера видят пароль в адресе</translation>
    </message>
    <message>
        <source>Try paravue-ctl --help.</source>
        <translation>Справка: paravue-ctl --help.</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>остановлено</translation>
    </message>
    <message>
        <source>the copy of &quot;%1&quot; cannot be read: %2</source>
        <translation>не удалось прочитать копию «%1»: %2</translation>
    </message>
    <message>
        <source>The recorder has these values already.</source>
        <translation>В регистраторе уже такие значения.</translation>
    </message>
    <message>
        <source>Not sent: %1</source>
        <translation>Не отправлено: %1</translation>
    </message>
    <message>
        <source>Sent and confirmed: %1</source>
        <translation>Отправлено и подтверждено: %1</translation>
    </message>
    <message>
        <source>the recorder has not kept %1 as it was sent</source>
        <translation>регистратор не сохранил %1 в отправленном виде</translation>
    </message>
    <message>
        <source>%1; nothing has arrived</source>
        <translation>%1; ничего не принято</translation>
    </message>
    <message>
        <source>%1; arrived: %2; not confirmed: %3</source>
        <translation>%1; принято: %2; не подтверждено: %3</translation>
    </message>
    <message>
        <source>the files were not sent</source>
        <translation>файлы не отправлены</translation>
    </message>
    <message>
        <source>everything has arrived, but it was not confirmed: %1</source>
        <translation>всё принято, но не подтверждено: %1</translation>
    </message>
    <message>
        <source>a value is set as FILE/SECTION/KEY=VALUE</source>
        <translation>значение задаётся в виде FILE/SECTION/KEY=VALUE</translation>
    </message>
    <message>
        <source>the value of %1 has several lines</source>
        <translation>значение %1 занимает несколько строк</translation>
    </message>
    <message>
        <source>%1 is no UTF-8 text</source>
        <translation>%1 — не текст UTF-8</translation>
    </message>
    <message>
        <source>%1 is set twice</source>
        <translation>%1 задано дважды</translation>
    </message>
    <message>
        <source>%1 is never sent</source>
        <translation>%1 никогда не отправляется</translation>
    </message>
    <message>
        <source>the recorder has no file &quot;%1&quot;</source>
        <translation>в регистраторе нет файла «%1»</translation>
    </message>
    <message>
        <source>the recorder takes no file &quot;%1&quot;</source>
        <translation>регистратор не принимает файл «%1»</translation>
    </message>
    <message>
        <source>the recorder has no value %1; --force sets it</source>
        <translation>в регистраторе нет значения %1; --force его задаст</translation>
    </message>
    <message>
        <source>too few arguments: %1 takes %2</source>
        <translation>слишком мало аргументов: для %1 указывается %2</translation>
    </message>
    <message>
        <source>Prints the values that differ. A and B are each a recorder, a snapshot, a folder of its files, or a file of wanted values; what has a &quot;/&quot; or exists is no recorder.</source>
        <translation>Выводит различающиеся значения. A и B — регистратор, снимок, папка с его файлами или файл нужных значений; то, что содержит «/» или существует, — не регистратор.</translation>
    </message>
    <message>
        <source>only in %1: %2</source>
        <translation>только в %1: %2</translation>
    </message>
    <message>
        <source>there is no value that fits %1</source>
        <translation>нет значения для %1</translation>
    </message>
    <message>
        <source>%1 holds too much for settings</source>
        <translation>в %1 слишком много данных для настроек</translation>
    </message>
    <message>
        <source>%1 holds no files</source>
        <translation>в %1 нет файлов</translation>
    </message>
    <message>
        <source>(none)</source>
        <translation>(нет)</translation>
    </message>
    <message>
        <source>
ADDRESS is [login:password@]host[:port]. Without a password in it, the password
is the one of --password-file, that of the environment variable PARAVUE_PASSWORD,
the remembered one, or typed after the recorder has refused these. A password in
ADDRESS can be seen by other users of this computer.

A value is named FILE/SECTION/KEY. In a PATTERN, * stands for any letters and ? for
one; &quot;net&quot; and &quot;net/untitled&quot; mean everything in the file and in the section.

Exit code:
  0  done
  1  the recorder has refused something
  2  the command line was wrong
  3  no connection to the recorder, or no answer in time
  4  the recorder has refused the login
  5  values differ, were not found or not kept, or something was not confirmed
  6  a file on this computer could not be used, or the recorder is locked
  7  what the recorder has sent, or a file of values, makes no sense
  8  stopped before it was done
</source>
        <translation>
ADDRESS — это [login:password@]host[:port]. Если пароля в нём нет, берётся пароль
из --password-file, из переменной окружения PARAVUE_PASSWORD, запомненный или,
когда регистратор их отклонил, введённый с клавиатуры. Пароль в ADDRESS видят
другие пользователи этого компьютера.

Значение называется FILE/SECTION/KEY. В PATTERN знак * заменяет любые буквы, ? — одну;
&quot;net&quot; и &quot;net/untitled&quot; означают всё в файле и в секции.

Код завершения:
  0  готово
  1  регистратор что-то отклонил
  2  неверная командная строка
  3  нет связи с регистратором или ответа в срок
  4  регистратор отклонил логин
  5  значения различаются, не найдены или не сохранены, либо что-то не подтверждено
  6  не удалось использовать файл на этом компьютере, или регистратор занят
  7  данные регистратора или файла значений не имеют смысла
  8  остановлено до окончания
</translation>
    </message>
    <message>
        <source>Sets the values that a PATTERN names, or all, to those of a snapshot, as set does.</source>
        <translation>Возвращает значения, которые называет PATTERN, или все, к тем, что в снимке, как set.</translation>
    </message>
    <message>
        <source>The snapshot is of the recorder %1.</source>
        <translation>Снимок сделан с регистратора %1.</translation>
    </message>
    <message>
        <source>the snapshot has no value that fits %1</source>
        <translation>в снимке нет значения для %1</translation>
    </message>
    <message>
        <source>%1 With --force it is restored.</source>
        <translation>%1 С --force он будет восстановлен.</translation>
    </message>
    <message>
        <source>entries of %1 were added, removed or renamed since, and the snapshot has no passwords for them: these lists were not restored</source>
        <translation>записи %1 с тех пор добавлены, удалены или переименованы, а паролей для них в снимке нет: эти списки не восстановлены</translation>
    </message>
    <message>
        <source>Runs a function of the recorder. FUNCTION is one of %1.</source>
        <translation>Выполняет функцию регистратора. FUNCTION — одна из %1.</translation>
    </message>
    <message>
        <source>Write the snapshot, or the report of the recorder, as FILE.</source>
        <translation>Записать снимок или отчёт регистратора в файл FILE.</translation>
    </message>
    <message>
        <source>%1 needs an argument</source>
        <translation>для %1 нужен аргумент</translation>
    </message>
    <message>
        <source>%1 takes no argument</source>
        <translation>%1 не принимает аргумента</translation>
    </message>
    <message>
        <source>%1 cannot be the argument of %2</source>
        <translation>%1 не может быть аргументом %2</translation>
    </message>
    <message>
        <source>the file %1 cannot be read</source>
        <translation>не удалось прочитать файл %1</translation>
    </message>
    <message>
        <source>it restarts the recorder, which records nothing meanwhile</source>
        <translation>регистратор перезагрузится и некоторое время ничего не будет записывать</translation>
    </message>
    <message>
        <source>what it removes from the recorder is lost for good</source>
        <translation>то, что она удаляет из регистратора, теряется навсегда</translation>
    </message>
    <message>
        <source>%1 at %2: %3. Run it (yes/no)? </source>
        <translation>%1 на %2: %3. Выполнить (yes/no)? </translation>
    </message>
    <message>
        <source>yes</source>
        <translation>да</translation>
    </message>
    <message>
        <source>the functions are %1</source>
        <translation>функции: %1</translation>
    </message>
    <message>
        <source>only %1 has something to write</source>
        <translation>записывать нечего, кроме %1</translation>
    </message>
    <message>
        <source>%1 was not confirmed: %2; --yes runs it</source>
        <translation>%1 не подтверждена: %2; с --yes она выполнится</translation>
    </message>
    <message>
        <source>cannot write %1: %2</source>
        <translation>не удалось записать %1: %2</translation>
    </message>
    <message>
        <source>Prints what can be set, and what the values may be, from the recorder&apos;s interface description.</source>
        <translation>Выводит, что можно задать и какими могут быть значения, по описанию интерфейса регистратора.</translation>
    </message>
    <message>
        <source>Overwrite FILE when it exists; set keys that the recorder does not have and values that its description does not allow; restore the snapshot of another recorder.</source>
        <translation>Заменить FILE, если он есть; задавать ключи, которых нет в регистраторе, и значения, которых не допускает его описание; восстановить снимок другого регистратора.</translation>
    </message>
    <message>
        <source>pattern %1</source>
        <translation>шаблон %1</translation>
    </message>
    <message>
        <source>mask %1</source>
        <translation>маска %1</translation>
    </message>
    <message>
        <source>not empty</source>
        <translation>не пусто</translation>
    </message>
    <message>
        <source>nothing fits %1 that a user can set</source>
        <translation>нет ничего для %1, что может задать пользователь</translation>
    </message>
    <message>
        <source>the interface description: %1</source>
        <translation>описание интерфейса: %1</translation>
    </message>
    <message>
        <source>the value of %1 is not allowed: %2</source>
        <translation>значение %1 недопустимо: %2</translation>
    </message>
    <message>
        <source>%1; --force sends it</source>
        <translation>%1; --force его отправит</translation>
    </message>
    <message>
        <source>%1 takes no inventory</source>
        <translation>%1 не работает с --inventory</translation>
    </message>
    <message>
        <source>--%1 takes a number from 1 to %2</source>
        <translation>для --%1 указывается число от 1 до %2</translation>
    </message>
    <message>
        <source>%1 needs --inventory</source>
        <translation>для %1 нужен --inventory</translation>
    </message>
    <message>
        <source>Prints which wanted values the recorder does not have.</source>
        <translation>Выводит, каких нужных значений нет в регистраторе.</translation>
    </message>
    <message>
        <source>Compare with what FILE says: a line KEY=VALUE for each value.</source>
        <translation>Сравнить с тем, что указано в FILE: по строке KEY=VALUE на значение.</translation>
    </message>
    <message>
        <source>Run COMMAND, without ADDRESS, with each recorder that FILE (.ini, .json or .csv) lists.</source>
        <translation>Выполнить COMMAND, без ADDRESS, с каждым регистратором из FILE (.ini, .json или .csv).</translation>
    </message>
    <message>
        <source>Only the recorders of this group of the inventory.</source>
        <translation>Только регистраторы этой группы.</translation>
    </message>
    <message>
        <source>Only the recorders whose names fit.</source>
        <translation>Только регистраторы с подходящими именами.</translation>
    </message>
    <message>
        <source>So many recorders at once (without it 32).</source>
        <translation>Столько регистраторов одновременно (без параметра 32).</translation>
    </message>
    <message>
        <source>Begin no more recorders after so many failures.</source>
        <translation>После стольких неудач не начинать с другими регистраторами.</translation>
    </message>
    <message>
        <source>Run with so many recorders first, and with the others only when all of these are done.</source>
        <translation>Сначала столько регистраторов, а остальные — только когда все эти готовы.</translation>
    </message>
    <message>
        <source>Leave out the recorders that FILE lists as done, and add those that are done now.</source>
        <translation>Пропустить регистраторы, которые в FILE отмечены как готовые, и отметить готовые сейчас.</translation>
    </message>
    <message>
        <source>values that differ: %1</source>
        <translation>различающихся значений: %1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no field</source>
        <translation>поля «%1» нет</translation>
    </message>
    <message>
        <source>a line is [NAME] or FIELD=VALUE</source>
        <translation>строка — это [NAME] или FIELD=VALUE</translation>
    </message>
    <message>
        <source>1: there is no column &quot;name&quot;</source>
        <translation>1: нет столбца «name»</translation>
    </message>
    <message>
        <source>a name is missing</source>
        <translation>нет имени</translation>
    </message>
    <message>
        <source>&quot;%1&quot; comes twice</source>
        <translation>«%1» указан дважды</translation>
    </message>
    <message>
        <source>a quote is not closed</source>
        <translation>кавычка не закрыта</translation>
    </message>
    <message>
        <source>there are %1 columns in place of %2</source>
        <translation>столбцов %1 вместо %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; of &quot;%2&quot; is no text</source>
        <translation>поле «%1» записи «%2» — не текст</translation>
    </message>
    <message>
        <source>%1 is too large</source>
        <translation>файл %1 слишком велик</translation>
    </message>
    <message>
        <source>there are no recorders</source>
        <translation>нет ни одного регистратора</translation>
    </message>
    <message>
        <source>the address of &quot;%1&quot; has a login; there are fields for it</source>
        <translation>в адресе «%1» есть логин; для него есть поля</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has no address of a recorder</source>
        <translation>у «%1» нет адреса регистратора</translation>
    </message>
    <message>
        <source>&quot;%1&quot; and &quot;%2&quot; have one address</source>
        <translation>у «%1» и «%2» один адрес</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has no variable &quot;%2&quot;</source>
        <translation>у «%1» нет переменной «%2»</translation>
    </message>
    <message>
        <source>no recorder is in the group %1</source>
        <translation>в группе %1 нет регистраторов</translation>
    </message>
    <message>
        <source>no recorder fits %1</source>
        <translation>нет регистратора для %1</translation>
    </message>
    <message>
        <source>not begun</source>
        <translation>не начато</translation>
    </message>
    <message>
        <source>done</source>
        <translation>готово</translation>
    </message>
    <message>
        <source>differs</source>
        <translation>отличается</translation>
    </message>
    <message>
        <source>failed (%1)</source>
        <translation>ошибка (%1)</translation>
    </message>
    <message>
        <source>%1 is of no run of this command</source>
        <translation>%1 не от выполнения этой команды</translation>
    </message>
    <message>
        <source>no value was given</source>
        <translation>не указано ни одного значения</translation>
    </message>
    <message>
        <source>Print what the setup window calls the values, too.</source>
        <translation>Выводить и то, как эти значения называет окно настройки.</translation>
    </message>
    <message>
        <source>%1 of %2, not done: %3</source>
        <translation>%1 из %2, не готово: %3</translation>
    </message>
    <message>
        <source>Prints what support needs to know, without secrets: versions, the log of the exchange and the files.</source>
        <translation>Выводит то, что нужно поддержке, без секретов: версии, журнал обмена и файлы.</translation>
    </message>
    <message>
        <source>Do not ask before something is lost or the recorder restarts, or before a report is written.</source>
        <translation>Не спрашивать, когда что-то теряется, регистратор перезагружается или записывается отчёт.</translation>
    </message>
    <message>
        <source>%1 (secret)</source>
        <translation>%1 (секрет)</translation>
    </message>
    <message>
        <source>%1 (%2 bytes)</source>
        <translation>%1 (байтов: %2)</translation>
    </message>
    <message>
        <source>Files: %1</source>
        <translation>Файлы: %1</translation>
    </message>
    <message>
        <source>Left out: %1</source>
        <translation>Опущено: %1</translation>
    </message>
    <message>
        <source>Write %1 (yes/no)? </source>
        <translation>Записать %1 (yes/no)? </translation>
    </message>
    <message>
        <source>%1 was not confirmed; --yes writes it</source>
        <translation>запись %1 не подтверждена; с --yes файл будет записан</translation>
    </message>
    <message>
        <source>Prints figures of the recorder in the text format of Prometheus.</source>
        <translation>Выводит показатели регистратора в текстовом формате Prometheus.</translation>
    </message>
    <message>
        <source>the limit of open files allows %1 jobs, not %2</source>
        <translation>предел открытых файлов допускает %1 заданий, а не %2</translation>
    </message>
    <message>
        <source>with an inventory %1 needs -o with a variable such as {name}</source>
        <translation>с --inventory для %1 нужен -o с переменной, например {name}</translation>
    </message>
    <message>
        <source>%1; not confirmed: %2</source>
        <translation>%1; не подтверждены: %2</translation>
    </message>
    <message>
        <source>another run uses %1; its lock is %2</source>
        <translation>файл %1 использует другой запуск; его блокировка — %2</translation>
    </message>
    <message>
        <source>the file %1 cannot be made</source>
        <translation>не удалось создать файл %1</translation>
    </message>
    <message>
        <source>End an exchange that lasts longer, though the recorder goes on answering (without it 40 times the timeout).</source>
        <translation>Прерывать обмен, который длится дольше, даже если регистратор продолжает отвечать (без параметра 40 значений --timeout).</translation>
    </message>
    <message>
        <source>the exchange has lasted longer than %1 s; --time-limit allows more</source>
        <translation>обмен длился дольше %1 с; --time-limit разрешает больше</translation>
    </message>
    <message>
        <source>standard output cannot be written</source>
        <translation>не удалось записать стандартный вывод</translation>
    </message>
    <message>
        <source>as lines of a file these would not be read back as they are, so nothing was sent: %1</source>
        <translation>записанные строками файла, они не читались бы так же, поэтому ничего не отправлено: %1</translation>
    </message>
    <message>
        <source>values of the recorder would be lost with their file written again, so nothing was sent: %1</source>
        <translation>значения регистратора пропали бы при записи их файла, поэтому ничего не отправлено: %1</translation>
    </message>
    <message>
        <source>a &quot;/&quot; in a key or a section cannot be addressed, so these were not restored: %1</source>
        <translation>ключ или раздел с «/» нельзя указать в адресе, поэтому не восстановлены: %1</translation>
    </message>
</context>
<context>
    <name>DemoRecorder</name>
    <message>
        <source>The program %1 was not found beside this one or in the search path.</source>
        <translation>Программа %1 не найдена ни рядом с этой, ни в путях поиска.</translation>
    </message>
    <message>
        <source>%1 could not be started: %2</source>
        <translation>Не удалось запустить %1: %2</translation>
    </message>
    <message>
        <source>%1 did not say on which port it listens.</source>
        <translation>%1 не сообщает, на каком порту принимает соединения.</translation>
    </message>
    <message>
        <source>%1 ended or did not say on which port it listens.</source>
        <translation>%1 завершает работу или не сообщает, на каком порту принимает соединения.</translation>
    </message>
</context>
<context>
    <name>DescriptionCheck</name>
    <message>
        <source>%1 has no slot &quot;%2&quot;</source>
        <translation>%1 не имеет слота «%2»</translation>
    </message>
    <message>
        <source>The slot &quot;%1&quot; takes no param</source>
        <translation>Слот «%1» не принимает param</translation>
    </message>
    <message>
        <source>The slot &quot;%1&quot; needs a param</source>
        <translation>Слоту «%1» нужен param</translation>
    </message>
    <message>
        <source>Unknown action type &quot;%1&quot;</source>
        <translation>Неизвестный тип действия «%1»</translation>
    </message>
    <message>
        <source>%1 is never enabled or disabled</source>
        <translation>%1 не включается и не отключается</translation>
    </message>
    <message>
        <source>Only calls run here</source>
        <translation>Здесь выполняются только вызовы (call)</translation>
    </message>
    <message>
        <source>Nothing runs this action: it stands in no control</source>
        <translation>Это действие ничто не запускает: оно стоит вне элемента управления</translation>
    </message>
    <message>
        <source>%1 has no states, so this action never runs</source>
        <translation>%1 не имеет состояний, поэтому действие никогда не выполнится</translation>
    </message>
    <message>
        <source>Unknown state &quot;%1&quot;; known are %2</source>
        <translation>Неизвестное состояние «%1»; известны: %2</translation>
    </message>
    <message>
        <source>Without a state this action never runs</source>
        <translation>Без состояния это действие никогда не выполнится</translation>
    </message>
    <message>
        <source>%1 runs no calls, so this action never runs</source>
        <translation>%1 не выполняет вызовов, поэтому действие никогда не выполнится</translation>
    </message>
    <message>
        <source>There is no tag &quot;%1&quot;</source>
        <translation>Нет тега «%1»</translation>
    </message>
    <message>
        <source>The tag &quot;%1&quot; stands in no control</source>
        <translation>Тег «%1» стоит вне элемента управления</translation>
    </message>
    <message>
        <source>Nothing runs this task: it stands neither in &quot;window&quot; nor in a dialog</source>
        <translation>Эту задачу ничто не запускает: она не стоит ни в «window», ни в диалоге</translation>
    </message>
    <message>
        <source>With a negative period this task never runs</source>
        <translation>С отрицательным периодом задача никогда не выполнится</translation>
    </message>
    <message>
        <source>Unknown time task &quot;%1&quot;</source>
        <translation>Неизвестная периодическая задача «%1»</translation>
    </message>
    <message>
        <source>A task that fetches pictures needs a &quot;url&quot;</source>
        <translation>Задаче, которая получает изображения, нужен «url»</translation>
    </message>
    <message>
        <source>%1 shows no pictures</source>
        <translation>%1 не показывает изображений</translation>
    </message>
    <message>
        <source>Only live video tells where a camera looks</source>
        <translation>Только живое видео сообщает, куда направлена камера</translation>
    </message>
    <message>
        <source>%1 shows no position of a camera</source>
        <translation>%1 не показывает положение камеры</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no name for a configuration file</source>
        <translation>«%1» не годится как имя файла конфигурации</translation>
    </message>
    <message>
        <source>The file &quot;%1&quot; is listed twice</source>
        <translation>Файл «%1» указан дважды</translation>
    </message>
    <message>
        <source>The first file of the list stands for the description itself and is not fetched; it should be &quot;interface&quot;, not &quot;%1&quot;</source>
        <translation>Первый файл списка обозначает само описание и не запрашивается; это должен быть «interface», а не «%1»</translation>
    </message>
    <message>
        <source>Without a get_command the file &quot;%1&quot; is not fetched</source>
        <translation>Без get_command файл «%1» не запрашивается</translation>
    </message>
    <message>
        <source>Unknown file type &quot;%1&quot; counts as &quot;inifile&quot;</source>
        <translation>Неизвестный тип файла «%1» считается «inifile»</translation>
    </message>
    <message>
        <source>No recorder sends a file &quot;%1&quot;, and the description does not list it</source>
        <translation>Ни один регистратор не отправляет файл «%1», и в описании его нет</translation>
    </message>
    <message>
        <source>The file &quot;%1&quot; is not in the list of files of the description, so it is not fetched</source>
        <translation>Файла «%1» нет в списке файлов описания, поэтому он не запрашивается</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no address; that would be file/section/key</source>
        <translation>«%1» не адрес; адрес имеет вид file/section/key</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has no value to write; that would be file/section/key/value</source>
        <translation>В «%1» нет значения для записи; нужно file/section/key/value</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no group of values; that would be file/section</source>
        <translation>«%1» не группа значений; группа имеет вид file/section</translation>
    </message>
    <message>
        <source>The regular expression &quot;%1&quot; is invalid: %2</source>
        <translation>Неверное регулярное выражение «%1»: %2</translation>
    </message>
    <message>
        <source>The folder of files has no &quot;%1&quot;</source>
        <translation>В папке с файлами нет «%1»</translation>
    </message>
    <message>
        <source>The file &quot;%1&quot; has no key &quot;%2&quot;</source>
        <translation>В файле «%1» нет ключа «%2»</translation>
    </message>
    <message>
        <source>This call does not come to an end: it leads into a circle of calls</source>
        <translation>Этот вызов не завершается: он ведёт в круг вызовов</translation>
    </message>
    <message>
        <source>This key is not used: an entry has one</source>
        <translation>Этот ключ не используется: ключ есть у пункта</translation>
    </message>
    <message>
        <source>This entry has no key, so choosing it writes nothing</source>
        <translation>У этого пункта нет ключа, поэтому его выбор ничего не записывает</translation>
    </message>
    <message>
        <source>This key is not used: the entry has one inside its text</source>
        <translation>Этот ключ не используется: у пункта есть ключ внутри текста</translation>
    </message>
    <message>
        <source>There is no entry for this key</source>
        <translation>Нет пункта для этого ключа</translation>
    </message>
    <message>
        <source>There is no entry for this keyset</source>
        <translation>Нет пункта для этого набора ключей (keyset)</translation>
    </message>
    <message>
        <source>There is no column for this source</source>
        <translation>Нет столбца для этого источника</translation>
    </message>
    <message>
        <source>Without a row_count the list shows nothing of its sources</source>
        <translation>Без row_count список ничего не показывает из своих источников</translation>
    </message>
    <message>
        <source>This key is not used: a week has one or seven</source>
        <translation>Этот ключ не используется: у недели их один или семь</translation>
    </message>
    <message>
        <source>Without a key the list shows nothing</source>
        <translation>Без ключа список ничего не показывает</translation>
    </message>
    <message>
        <source>value=&quot;%1&quot; is not one character, so nothing can be planned with this kind</source>
        <translation>value=&quot;%1&quot; не один символ, поэтому с этим видом ничего нельзя запланировать</translation>
    </message>
    <message>
        <source>minimum is greater than maximum</source>
        <translation>minimum больше, чем maximum</translation>
    </message>
    <message>
        <source>minvalue is greater than maxvalue</source>
        <translation>minvalue больше, чем maxvalue</translation>
    </message>
    <message>
        <source>Only a list of choices has keysets</source>
        <translation>Наборы ключей (keyset) бывают только у списка выбора</translation>
    </message>
    <message>
        <source>Only the first &quot;%1&quot; counts</source>
        <translation>Учитывается только первый «%1»</translation>
    </message>
    <message>
        <source>The window</source>
        <translation>Окно</translation>
    </message>
    <message>
        <source>A dialog</source>
        <translation>Диалог</translation>
    </message>
    <message>
        <source>There is no page %1; the first one has the number 0</source>
        <translation>Нет страницы %1; первая имеет номер 0</translation>
    </message>
    <message>
        <source>Unknown node type &quot;%1&quot;: a page holds grids, and a control stands in one of them</source>
        <translation>Неизвестный тип узла «%1»: на странице стоят сетки, а элемент управления стоит в одной из них</translation>
    </message>
    <message>
        <source>A stretch needs a &quot;column&quot; or a &quot;row&quot;</source>
        <translation>Растяжению нужен «column» или «row»</translation>
    </message>
    <message>
        <source>This row or column is beyond the limits of a grid</source>
        <translation>Эта строка или столбец выходит за пределы сетки</translation>
    </message>
    <message>
        <source>Unknown control type &quot;%1&quot;</source>
        <translation>Неизвестный тип элемента управления «%1»</translation>
    </message>
    <message>
        <source>A control of the type &quot;%1&quot;</source>
        <translation>Элемент управления типа «%1»</translation>
    </message>
    <message>
        <source>A control of the type &quot;%1&quot; holds no other one</source>
        <translation>Элемент управления типа «%1» не содержит других</translation>
    </message>
    <message>
        <source>The Cancel button shows the tooltip of &quot;buttonOK&quot;</source>
        <translation>Кнопка «Отмена» показывает подсказку «buttonOK»</translation>
    </message>
    <message>
        <source>Nothing uses this keyset: it stands in no list of choices</source>
        <translation>Этот набор ключей (keyset) не используется: он стоит вне списка выбора</translation>
    </message>
    <message>
        <source>Another item of the grid covers this place: row %1, column %2</source>
        <translation>Это место занято другим элементом сетки: строка %1, столбец %2</translation>
    </message>
    <message>
        <source>There is no function &quot;%1&quot;</source>
        <translation>Нет функции «%1»</translation>
    </message>
    <message>
        <source>There are no translations into &quot;%1&quot;</source>
        <translation>Нет переводов на «%1»</translation>
    </message>
    <message>
        <source>Unknown dialog tag &quot;%1&quot;</source>
        <translation>Неизвестный тег диалога «%1»</translation>
    </message>
    <message>
        <source>The first tag &quot;%1&quot; stands in no dialog</source>
        <translation>Первый тег «%1» стоит вне диалога</translation>
    </message>
    <message>
        <source>The dialog &quot;%1&quot; is open already when this runs</source>
        <translation>Диалог «%1» к этому моменту уже открыт</translation>
    </message>
    <message>
        <source>There is no section &quot;%1&quot; that lists what to write</source>
        <translation>Нет секции «%1» с перечнем того, что записать</translation>
    </message>
    <message>
        <source>This call may show dialogs that are missing: %1</source>
        <translation>Этот вызов может показать диалоги, которых нет: %1</translation>
    </message>
    <message>
        <source>This call works on the control with the tag &quot;%1&quot;, and there is none of that type</source>
        <translation>Этот вызов работает с элементом управления с тегом «%1», а такого типа среди них нет</translation>
    </message>
    <message>
        <source>Unknown word &quot;%1&quot; in the parameter; known are %2</source>
        <translation>Неизвестное слово «%1» в параметре; известны: %2</translation>
    </message>
    <message>
        <source>The parameter has the wrong number of fields; it must be %1</source>
        <translation>Неверное число полей параметра; он должен иметь вид %1</translation>
    </message>
    <message>
        <source>Nothing opens the dialog &quot;%1&quot;</source>
        <translation>Диалог «%1» ничто не открывает</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is translated twice; the first text counts</source>
        <translation>«%1» переведён дважды; учитывается первый текст</translation>
    </message>
    <message>
        <source>This text is the same in all languages; &quot;@&quot; with an id would have a translation into each</source>
        <translation>Этот текст одинаков на всех языках; «@» с идентификатором даёт перевод на каждый</translation>
    </message>
    <message>
        <source>Alt+%1 is the key of the tab &quot;%2&quot; already</source>
        <translation>Alt+%1 уже занят вкладкой «%2»</translation>
    </message>
    <message>
        <source>A &quot;{&quot; has no &quot;}&quot;, so no value is shown for it</source>
        <translation>У «{» нет «}», поэтому значение не показывается</translation>
    </message>
    <message>
        <source>A &quot;}&quot; has no &quot;{&quot;, so no value is shown for it</source>
        <translation>У «}» нет «{», поэтому значение не показывается</translation>
    </message>
    <message>
        <source>There is no translation into &quot;ru&quot;, which is the language as long as the recorder names none</source>
        <translation>Нет перевода на «ru», а это язык окна, пока регистратор не назвал другой</translation>
    </message>
    <message>
        <source>The text &quot;@%1&quot; has no translation%2</source>
        <translation>У текста «@%1» нет перевода%2</translation>
    </message>
    <message>
        <source>The text &quot;@%1&quot; has no translation into %2</source>
        <translation>У текста «@%1» нет перевода на %2</translation>
    </message>
    <message>
        <source> (an id ends at a blank; &quot;@%1&quot; would have one)</source>
        <translation> (идентификатор заканчивается пробелом; у «@%1» перевод есть)</translation>
    </message>
    <message>
        <source>&quot;@%1&quot; begins a translation and is shown as it is written there</source>
        <translation>«@%1» начинает перевод и показывается так, как там написано</translation>
    </message>
    <message>
        <source>The translation of &quot;@%1&quot; into %2 refers to itself</source>
        <translation>Перевод «@%1» на %2 ссылается сам на себя</translation>
    </message>
    <message>
        <source>The &quot;&amp;&quot; is not shown here; &quot;&amp;amp;&amp;amp;&quot; shows one</source>
        <translation>«&amp;» здесь не показывается; его показывает «&amp;amp;&amp;amp;»</translation>
    </message>
    <message>
        <source>The &quot;&amp;&quot; is shown as it stands: only buttons, check boxes and tabs have keys</source>
        <translation>«&amp;» показывается как есть: клавиши бывают только у кнопок, флажков и вкладок</translation>
    </message>
    <message>
        <source>&quot;&lt;%1&gt;&quot; is shown as it stands: the first &quot;&lt;&quot; of the text begins no tag</source>
        <translation>«&lt;%1&gt;» показывается как есть: первый «&lt;» текста не начинает тег</translation>
    </message>
    <message>
        <source>&quot;&lt;%1&gt;&quot; is shown as it stands: only labels and tool tips read markup</source>
        <translation>«&lt;%1&gt;» показывается как есть: разметка действует только в надписях и подсказках</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is shown as it stands: the text has no markup</source>
        <translation>«%1» показывается как есть: в тексте нет разметки</translation>
    </message>
    <message>
        <source>The markup is shown as it stands, since it refers to something outside</source>
        <translation>Разметка показывается как есть, так как ссылается на внешний ресурс</translation>
    </message>
    <message>
        <source>&quot;&lt;%1&gt;&quot; counts as markup and is not shown; &quot;&amp;amp;lt;&quot; shows a &quot;&lt;&quot;</source>
        <translation>«&lt;%1&gt;» считается разметкой и не показывается; знак «&lt;» показывает «&amp;amp;lt;»</translation>
    </message>
    <message>
        <source>OK does nothing: it neither saves nor closes without a call</source>
        <translation>OK ничего не делает: без вызова кнопка не сохраняет и не закрывает окно</translation>
    </message>
    <message>
        <source>OK does nothing: there is no &quot;buttonOK&quot; with a call</source>
        <translation>OK ничего не делает: нет «buttonOK» с вызовом</translation>
    </message>
    <message>
        <source>A tab without a name cannot be told from others by keyboard</source>
        <translation>Вкладку без имени нельзя отличить от других с клавиатуры</translation>
    </message>
    <message>
        <source>Nobody can reach these tabs: nothing enables or shows the control</source>
        <translation>До этих вкладок нельзя добраться: элемент управления ничто не включает и не показывает</translation>
    </message>
    <message>
        <source>The window uses the tag &quot;%1&quot; itself</source>
        <translation>Тег «%1» использует само окно</translation>
    </message>
    <message>
        <source>The attribute &quot;%1&quot; has no meaning here</source>
        <translation>Атрибут «%1» здесь не имеет смысла</translation>
    </message>
    <message>
        <source>The attribute &quot;%1&quot; has no meaning here; &quot;%2&quot; would have one</source>
        <translation>Атрибут «%1» здесь не имеет смысла; возможно, имелся в виду «%2»</translation>
    </message>
    <message>
        <source>%1=&quot;%2&quot; is no number and counts as 0</source>
        <translation>%1=&quot;%2&quot; не число и считается нулём</translation>
    </message>
    <message>
        <source>%1=&quot;%2&quot; is no number and limits nothing</source>
        <translation>%1=&quot;%2&quot; не число и ничего не ограничивает</translation>
    </message>
    <message>
        <source>Unknown word in %1=&quot;%2&quot;; known are %3</source>
        <translation>Неизвестное слово в %1=&quot;%2&quot;; известны: %3</translation>
    </message>
    <message>
        <source>Nothing refers to the tag &quot;%1&quot;; is it meant as &quot;%2&quot;?</source>
        <translation>На тег «%1» ничто не ссылается; возможно, имелся в виду «%2»?</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no number and counts as 0</source>
        <translation>«%1» не число и считается нулём</translation>
    </message>
    <message>
        <source>Unknown word &quot;%1&quot;; known are %2</source>
        <translation>Неизвестное слово «%1»; известны: %2</translation>
    </message>
    <message>
        <source>A %1 of %2 pixels does not fit a screen of %3 × %4</source>
        <translation>%1 в %2 пикселей не помещается на экране %3 × %4</translation>
    </message>
</context>
<context>
    <name>InfoText</name>
    <message>
        <source>the size of the pictures changes too often: an export has at most %1 files</source>
        <translation>размер изображений меняется слишком часто: файлов при выводе не больше %1</translation>
    </message>
    <message>
        <source>there is no usable header in %1</source>
        <translation>в %1 нет пригодного заголовка</translation>
    </message>
    <message>
        <source>
A recording is what a recorder sent on a connection to its video service. It may
begin and end anywhere. With ADDRESS, login:password@host[:port], one is made first
and kept if --record names a file for it.

An export has every video stream that begins with a key picture. Its times are
those of the stream, counted from the first picture. A time that is not behind
the one before is moved, and such times are counted. Where the codec or the size
of a picture changes, the next file begins: FILE.mkv, FILE-2.mkv, FILE-3.mkv.
The files get their names when all of them are complete.

Exit code:
  0  the streams were listed, and exported if that was asked for
  2  the command line was wrong
  3  no connection to the recorder, or no answer in time
  4  the recorder has refused the login
  6  a file could not be read or written
  7  there is no stream in the file, or no video to export
</source>
        <translation>
Запись — это то, что регистратор передал по соединению со своей службой видео.
Она может начинаться и кончаться где угодно. С ADDRESS, login:password@host[:port],
запись сначала делается и остаётся, если --record называет для неё файл.

Выводится каждый видеопоток, который начинается с ключевого кадра. Время берётся
из потока и отсчитывается от первого кадра. Время, которое не позже предыдущего,
сдвигается, и такие случаи подсчитываются. Там, где меняется кодек или размер
кадра, начинается следующий файл: FILE.mkv, FILE-2.mkv, FILE-3.mkv.
Файлы получают свои имена, когда все они готовы.

Код завершения:
  0  потоки перечислены и, если это требовалось, выведены
  2  неверная командная строка
  3  нет связи с регистратором или нет ответа в срок
  4  регистратор отклонил вход
  6  не удалось прочитать или записать файл
  7  в файле нет потоков или нет видео для вывода
</translation>
    </message>
    <message>
        <source>unknown codec &quot;%1&quot;: it is H264, mp4v or mjpeg</source>
        <translation>неизвестный кодек «%1»: бывают H264, mp4v и mjpeg</translation>
    </message>
    <message>
        <source>a header is given by --codec or by --header</source>
        <translation>заголовок задают через --codec или через --header</translation>
    </message>
    <message>
        <source>--force needs --export or --record</source>
        <translation>для --force нужен --export или --record</translation>
    </message>
    <message>
        <source>--export needs a value</source>
        <translation>для --export нужно значение</translation>
    </message>
    <message>
        <source>--export reads the recording twice, which standard input cannot be</source>
        <translation>--export читает запись дважды, а стандартный ввод так прочитать нельзя</translation>
    </message>
    <message>
        <source>cannot export to &quot;%1&quot;: the name has to end in .mkv or .mp4</source>
        <translation>нельзя вывести в «%1»: имя должно оканчиваться на .mkv или .mp4</translation>
    </message>
    <message>
        <source>there is no such file, and an address has the form login:password@host[:port]</source>
        <translation>такого файла нет, а адрес имеет вид login:password@host[:port]</translation>
    </message>
    <message>
        <source>--%1 needs an ADDRESS, login:password@host[:port]</source>
        <translation>для --%1 нужен ADDRESS, login:password@host[:port]</translation>
    </message>
    <message>
        <source>--record needs a value</source>
        <translation>для --record нужно значение</translation>
    </message>
    <message>
        <source>Show this help.</source>
        <translation>Показать эту справку.</translation>
    </message>
    <message>
        <source>Show the version.</source>
        <translation>Показать версию.</translation>
    </message>
    <message>
        <source>Print the list for other programs.</source>
        <translation>Вывести список в виде для других программ.</translation>
    </message>
    <message>
        <source>Write the video streams to FILE, which ends in .mkv or .mp4, without encoding them again.</source>
        <translation>Записать видеопотоки без перекодирования в FILE, имя которого оканчивается на .mkv или .mp4.</translation>
    </message>
    <message>
        <source>Of a recording that begins behind its header: its stream 0 is video of CODEC, which is H264, mp4v or mjpeg. Other streams are lost.</source>
        <translation>Для записи, которая начинается после своего заголовка: её поток 0 — видео с кодеком CODEC: H264, mp4v или mjpeg. Другие потоки теряются.</translation>
    </message>
    <message>
        <source>Of a recording that begins behind its header: use the one of the recording OTHER.</source>
        <translation>Для записи, которая начинается после своего заголовка: взять заголовок записи OTHER.</translation>
    </message>
    <message>
        <source>Overwrite FILE when it exists (with --export and --record).</source>
        <translation>Перезаписать FILE, если он есть (вместе с --export и --record).</translation>
    </message>
    <message>
        <source>Keep the recording of ADDRESS in FILE.</source>
        <translation>Сохранить запись с ADDRESS в FILE.</translation>
    </message>
    <message>
        <source>Record for so long (without it 10).</source>
        <translation>Сколько времени записывать (по умолчанию 10).</translation>
    </message>
    <message>
        <source>The password in ADDRESS is the one that a user types: send its digest. Otherwise it is sent as it stands.</source>
        <translation>Пароль в ADDRESS записан так, как его вводит пользователь: отправлять его хеш. Иначе он отправляется как есть.</translation>
    </message>
    <message>
        <source>Lists the streams of a recorded HVX3 byte stream, or of a recorder.</source>
        <translation>Перечисляет потоки записанных данных HVX3 или регистратора.</translation>
    </message>
    <message>
        <source>The recorded bytes; - reads them from standard input.</source>
        <translation>Записанные данные; - читает их из стандартного ввода.</translation>
    </message>
    <message>
        <source>more than one file was given</source>
        <translation>указано больше одного файла</translation>
    </message>
    <message>
        <source>no file was given, and no address</source>
        <translation>не указаны ни файл, ни адрес</translation>
    </message>
    <message>
        <source>cannot write %1: %2</source>
        <translation>не удалось записать %1: %2</translation>
    </message>
    <message>
        <source>the recorder has refused the login</source>
        <translation>регистратор отклонил вход</translation>
    </message>
    <message>
        <source>what answers at %1 is not a recorder</source>
        <translation>по адресу %1 отвечает не регистратор</translation>
    </message>
    <message>
        <source>no answer from %1 for %2 s</source>
        <translation>%1 не отвечает %2 с</translation>
    </message>
    <message>
        <source>no video from %1: %2</source>
        <translation>нет видео от %1: %2</translation>
    </message>
    <message>
        <source>%1 is empty</source>
        <translation>файл %1 пуст</translation>
    </message>
    <message>
        <source>there is no stream in %1: </source>
        <translation>в %1 нет потоков: </translation>
    </message>
    <message>
        <source>no index record begins in its %1</source>
        <translation>в нём (%1) не начинается ни одна индексная запись</translation>
    </message>
    <message>
        <source>a header begins in it but does not end</source>
        <translation>заголовок в нём начинается, но не заканчивается</translation>
    </message>
    <message>
        <source>no header begins in its %1. If it begins behind its header, --codec or --header helps</source>
        <translation>в нём (%1) не начинается ни один заголовок. Если он начинается после своего заголовка, помогает --codec или --header</translation>
    </message>
    <message>
        <source>--export reads the recording twice, which %1 cannot be</source>
        <translation>--export читает запись дважды, а %1 так прочитать нельзя</translation>
    </message>
    <message>
        <source>%1 exists; --force overwrites it</source>
        <translation>файл %1 уже есть; --force перезаписывает его</translation>
    </message>
    <message>
        <source>Try hvx3-info --help.</source>
        <translation>Смотрите hvx3-info --help.</translation>
    </message>
    <message>
        <source>%1 is a folder</source>
        <translation>%1 — это папка</translation>
    </message>
    <message>
        <source>there is no file %1</source>
        <translation>нет файла %1</translation>
    </message>
    <message>
        <source>cannot open %1: %2</source>
        <translation>не удалось открыть %1: %2</translation>
    </message>
    <message>
        <source>cannot read %1: %2</source>
        <translation>не удалось прочитать %1: %2</translation>
    </message>
    <message>
        <source>video</source>
        <translation>видео</translation>
    </message>
    <message>
        <source>text</source>
        <translation>текст</translation>
    </message>
    <message>
        <source>data</source>
        <translation>данные</translation>
    </message>
    <message>
        <source>unreadable</source>
        <translation>не читается</translation>
    </message>
    <message>
        <source>%1 x %2</source>
        <translation>%1 × %2</translation>
    </message>
    <message>
        <source>1 time</source>
        <translation>1 раз</translation>
    </message>
    <message numerus="yes">
        <source>%1 times</source>
        <translation>
            <numerusform>%1 раз</numerusform>
            <numerusform>%1 раза</numerusform>
            <numerusform>%1 раз</numerusform>
        </translation>
    </message>
    <message>
        <source>1 frame</source>
        <translation>1 кадр</translation>
    </message>
    <message numerus="yes">
        <source>%1 frames</source>
        <translation>
            <numerusform>%1 кадр</numerusform>
            <numerusform>%1 кадра</numerusform>
            <numerusform>%1 кадров</numerusform>
        </translation>
    </message>
    <message>
        <source>1 gap</source>
        <translation>1 разрыв</translation>
    </message>
    <message numerus="yes">
        <source>%1 gaps</source>
        <translation>
            <numerusform>%1 разрыв</numerusform>
            <numerusform>%1 разрыва</numerusform>
            <numerusform>%1 разрывов</numerusform>
        </translation>
    </message>
    <message>
        <source>1 record</source>
        <translation>1 запись</translation>
    </message>
    <message numerus="yes">
        <source>%1 records</source>
        <translation>
            <numerusform>%1 запись</numerusform>
            <numerusform>%1 записи</numerusform>
            <numerusform>%1 записей</numerusform>
        </translation>
    </message>
    <message>
        <source>1 picture</source>
        <translation>1 изображение</translation>
    </message>
    <message numerus="yes">
        <source>%1 pictures</source>
        <translation>
            <numerusform>%1 изображение</numerusform>
            <numerusform>%1 изображения</numerusform>
            <numerusform>%1 изображений</numerusform>
        </translation>
    </message>
    <message>
        <source> (the clock was set back %1)</source>
        <translation> (часы переводились назад: %1)</translation>
    </message>
    <message>
        <source>%1 kbit/s</source>
        <translation>%1 кбит/с</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>неизвестно</translation>
    </message>
    <message>
        <source>recording</source>
        <translation>запись</translation>
    </message>
    <message>
        <source>in front</source>
        <translation>в начале</translation>
    </message>
    <message>
        <source>answer to the login, %1</source>
        <translation>ответ на вход, %1</translation>
    </message>
    <message>
        <source>header</source>
        <translation>заголовок</translation>
    </message>
    <message>
        <source>given on the command line</source>
        <translation>задан в командной строке</translation>
    </message>
    <message>
        <source>name</source>
        <translation>название</translation>
    </message>
    <message>
        <source>text %1</source>
        <translation>текст %1</translation>
    </message>
    <message>
        <source>records</source>
        <translation>записи</translation>
    </message>
    <message>
        <source>headers %1, index records %2, data records %3 with %4</source>
        <translation>заголовков: %1, индексных: %2, данных: %3 (%4)</translation>
    </message>
    <message>
        <source>duration</source>
        <translation>длительность</translation>
    </message>
    <message>
        <source>bit rate</source>
        <translation>скорость потока</translation>
    </message>
    <message>
        <source>lost</source>
        <translation>потеряно</translation>
    </message>
    <message>
        <source>%1 in %2, fragments %3, unfinished frames %4</source>
        <translation>%1 (%2), фрагментов: %3, неполных кадров: %4</translation>
    </message>
    <message>
        <source>cut at its end</source>
        <translation>обрезано в конце</translation>
    </message>
    <message>
        <source>%1 of a record</source>
        <translation>%1 записи</translation>
    </message>
    <message>
        <source> (codec not known)</source>
        <translation> (неизвестный кодек)</translation>
    </message>
    <message>
        <source>, then </source>
        <translation>, затем </translation>
    </message>
    <message>
        <source>pictures</source>
        <translation>изображения</translation>
    </message>
    <message>
        <source>key frames</source>
        <translation>ключевых кадров</translation>
    </message>
    <message>
        <source>frame rate</source>
        <translation>частота кадров</translation>
    </message>
    <message>
        <source>%1 per second, largest gap %2 ms</source>
        <translation>%1 в секунду, наибольший промежуток %2 мс</translation>
    </message>
    <message>
        <source>
stream %1: %2
</source>
        <translation>
поток %1: %2
</translation>
    </message>
    <message>
        <source>frames</source>
        <translation>кадров</translation>
    </message>
    <message>
        <source>%1 in %2</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>bytes</source>
        <translation>байтов</translation>
    </message>
    <message>
        <source>%1; a frame %2 to %3, mean %4</source>
        <translation>%1; в кадре от %2 до %3, в среднем %4</translation>
    </message>
    <message>
        <source>fragments %1, unfinished frames %2</source>
        <translation>фрагментов: %1, неполных кадров: %2</translation>
    </message>
    <message>
        <source>
exported to %1
</source>
        <translation>
выведено в %1
</translation>
    </message>
    <message>
        <source>stream %1</source>
        <translation>поток %1</translation>
    </message>
    <message>
        <source>moved times</source>
        <translation>сдвигов времени</translation>
    </message>
    <message>
        <source>clock set back</source>
        <translation>часы назад</translation>
    </message>
    <message>
        <source>1 byte</source>
        <translation>1 байт</translation>
    </message>
    <message numerus="yes">
        <source>%1 bytes</source>
        <translation>
            <numerusform>%1 байт</numerusform>
            <numerusform>%1 байта</numerusform>
            <numerusform>%1 байтов</numerusform>
        </translation>
    </message>
    <message>
        <source>
not exported: %1 with no key picture before
</source>
        <translation>
не выведено: %1, перед которыми нет ключевого кадра
</translation>
    </message>
    <message>
        <source>%1 is the recording itself</source>
        <translation>%1 — это сама запись</translation>
    </message>
    <message>
        <source>the recording was changed while it was read</source>
        <translation>запись изменилась во время чтения</translation>
    </message>
    <message>
        <source>there is no video stream with a key picture in %1</source>
        <translation>в %1 нет видеопотока с ключевым кадром</translation>
    </message>
    <message>
        <source>the password has letters that this computer&apos;s encoding lacks, so its digest would fit other passwords too</source>
        <translation>в пароле есть буквы, которых нет в кодировке этого компьютера, и его хеш подошёл бы и к другим паролям</translation>
    </message>
    <message>
        <source>nothing has come from %1 for %2 s</source>
        <translation>от %1 ничего не пришло за %2 с</translation>
    </message>
    <message>
        <source>the connection to %1 has ended</source>
        <translation>соединение с %1 завершилось</translation>
    </message>
    <message>
        <source>recorded %1 s of %2 s: %3</source>
        <translation>записано %1 с из %2 с: %3</translation>
    </message>
    <message>
        <source>--%1 takes a number from 1 to %2</source>
        <translation>для --%1 указывается число от 1 до %2</translation>
    </message>
    <message>
        <source>Give up when nothing has come from ADDRESS for so long (without it 12). Some cameras send a picture once in a minute.</source>
        <translation>Прекратить, если от ADDRESS столько секунд ничего не пришло (по умолчанию 12). Некоторые камеры присылают кадр раз в минуту.</translation>
    </message>
</context>
<context>
    <name>OrbDlgQuestion</name>
    <message>
        <source>Do not ask again</source>
        <translation>Больше не спрашивать</translation>
    </message>
</context>
<context>
    <name>OrbNetSetup</name>
    <message>
        <source>File &quot;%1&quot; is too large</source>
        <translation>Файл «%1» слишком велик</translation>
    </message>
    <message>
        <source>Wrong network address &quot;%1&quot;&lt;br&gt;Correct one is login:password@address[:port]</source>
        <translation>Неверный сетевой адрес «%1»&lt;br&gt;Верный вид: login:password@address[:port]</translation>
    </message>
    <message>
        <source>Connecting</source>
        <translation>Соединение</translation>
    </message>
    <message>
        <source>Logging in</source>
        <translation>Вход</translation>
    </message>
    <message>
        <source>Wrong device answer</source>
        <translation>Неверный ответ устройства</translation>
    </message>
    <message>
        <source>The recorder&apos;s answer to the login cannot be understood</source>
        <translation>Непонятный ответ регистратора при входе</translation>
    </message>
    <message>
        <source>What answers at this address is not a recorder</source>
        <translation>По этому адресу отвечает не регистратор</translation>
    </message>
    <message>
        <source>Unrecognized device error &quot;%1&quot;</source>
        <translation>Неизвестная ошибка устройства «%1»</translation>
    </message>
    <message>
        <source>Device error &quot;%1&quot;</source>
        <translation>Ошибка устройства «%1»</translation>
    </message>
    <message>
        <source>Can&apos;t save a local copy of &quot;%1&quot;; it was not sent</source>
        <translation>Не удалось сохранить локальную копию «%1»; файл не отправлен</translation>
    </message>
    <message>
        <source>%1 in wrong operation %2</source>
        <translation>%1 во время неподходящей операции %2</translation>
    </message>
    <message>
        <source>No answer from the recorder for %1 s</source>
        <translation>Регистратор не отвечает %1 с</translation>
    </message>
    <message>
        <source>The recorder refuses the connection</source>
        <translation>Регистратор отклоняет соединение</translation>
    </message>
    <message>
        <source>The recorder has closed the connection</source>
        <translation>Регистратор закрыл соединение</translation>
    </message>
    <message>
        <source>No device with this name was found</source>
        <translation>Устройство с таким именем не найдено</translation>
    </message>
    <message>
        <source>The recorder does not answer</source>
        <translation>Регистратор не отвечает</translation>
    </message>
    <message>
        <source>There is no route to the recorder: it is switched off, or in another network</source>
        <translation>Нет пути к регистратору: он выключен или находится в другой сети</translation>
    </message>
    <message>
        <source>The network connection was lost</source>
        <translation>Сетевое соединение потеряно</translation>
    </message>
    <message>
        <source>Network error %1</source>
        <translation>Ошибка сети %1</translation>
    </message>
    <message>
        <source>Asking for the login</source>
        <translation>Запрос логина и пароля</translation>
    </message>
    <message>
        <source>The recorder has refused the login</source>
        <translation>Регистратор отклонил вход</translation>
    </message>
    <message>
        <source>Authorization failed</source>
        <translation>Ошибка авторизации</translation>
    </message>
    <message>
        <source>%1 in wrong state %2</source>
        <translation>%1 в неподходящем состоянии %2</translation>
    </message>
    <message>
        <source>The recorder is still busy with the last request</source>
        <translation>Регистратор ещё занят предыдущим запросом</translation>
    </message>
    <message>
        <source>Can&apos;t read file &quot;%1&quot;</source>
        <translation>Не удалось прочитать файл «%1»</translation>
    </message>
    <message>
        <source>Can&apos;t save a local copy of &quot;%1&quot;</source>
        <translation>Не удалось сохранить локальную копию «%1»</translation>
    </message>
    <message>
        <source>Waiting for the recorder</source>
        <translation>Ожидание регистратора</translation>
    </message>
    <message>
        <source>Sending &quot;%1&quot;</source>
        <translation>Отправка «%1»</translation>
    </message>
    <message>
        <source>Fetching &quot;%1&quot;</source>
        <translation>Получение «%1»</translation>
    </message>
    <message>
        <source>The interface description lists more than %1 files</source>
        <translation>В описании интерфейса указано больше %1 файлов</translation>
    </message>
    <message>
        <source>The directives of file &quot;%1&quot; make it too large</source>
        <translation>Директивы файла «%1» делают его слишком большим</translation>
    </message>
    <message>
        <source>The directives of file &quot;%1&quot; take too long</source>
        <translation>Директивы файла «%1» выполняются слишком долго</translation>
    </message>
</context>
<context>
    <name>OrbProgressPie</name>
    <message>
        <source>%1%</source>
        <translation>%1%</translation>
    </message>
</context>
<context>
    <name>OrbSetup</name>
    <message>
        <source>File &quot;%1&quot; does not exist</source>
        <translation>Файл «%1» не существует</translation>
    </message>
    <message>
        <source>Wrong key &quot;%1&quot;</source>
        <translation>Неверный ключ «%1»</translation>
    </message>
    <message>
        <source>Wrong value &quot;%1&quot;</source>
        <translation>Неверное значение «%1»</translation>
    </message>
    <message>
        <source>Wrong regexp_key &quot;%1&quot;</source>
        <translation>Неверный regexp_key «%1»</translation>
    </message>
    <message>
        <source>The patterns of &quot;%1&quot; take too long</source>
        <translation>Шаблоны «%1» обрабатываются слишком долго</translation>
    </message>
</context>
<context>
    <name>PictureStatus</name>
    <message>
        <source>Video of the codec &quot;%1&quot; cannot be shown</source>
        <translation>Видео с кодеком «%1» показать нельзя</translation>
    </message>
    <message>
        <source>Connection lost</source>
        <translation>Соединение потеряно</translation>
    </message>
    <message>
        <source>Pictures are left out: this computer is too slow</source>
        <translation>Кадры пропускаются: компьютер не успевает</translation>
    </message>
    <message>
        <source>No picture: login refused?</source>
        <translation>Нет изображения: вход отклонён?</translation>
    </message>
    <message>
        <source>No connection</source>
        <translation>Нет соединения</translation>
    </message>
    <message>
        <source>No picture for %1 s</source>
        <translation>Нет изображения уже %1 с</translation>
    </message>
    <message>
        <source>No picture for %1 min</source>
        <translation>Нет изображения уже %1 мин</translation>
    </message>
    <message>
        <source>No picture yet</source>
        <translation>Изображения пока нет</translation>
    </message>
    <message>
        <source>Connecting…</source>
        <translation>Соединение…</translation>
    </message>
</context>
<context>
    <name>PictureTask</name>
    <message>
        <source>No picture yet</source>
        <translation>Изображения пока нет</translation>
    </message>
    <message>
        <source>No video in a preview</source>
        <translation>В предпросмотре видео нет</translation>
    </message>
    <message>
        <source>No address of pictures</source>
        <translation>Нет адреса изображений</translation>
    </message>
    <message>
        <source>Pictures have ended</source>
        <translation>Изображения больше не поступают</translation>
    </message>
    <message>
        <source>%1 (next attempt within %2 s)</source>
        <translation>%1 (новая попытка в течение %2 с)</translation>
    </message>
    <message>
        <source>%1 (next attempt within %2 min)</source>
        <translation>%1 (новая попытка в течение %2 мин)</translation>
    </message>
</context>
<context>
    <name>PreviewFiles</name>
    <message>
        <source>No temporary folder could be made: %1</source>
        <translation>Не удалось создать временную папку: %1</translation>
    </message>
    <message>
        <source>The file %1 cannot be read.</source>
        <translation>Не удалось прочитать файл %1.</translation>
    </message>
    <message>
        <source>The file %1 is too large.</source>
        <translation>Файл %1 слишком велик.</translation>
    </message>
    <message>
        <source>%1 is no folder.</source>
        <translation>%1 не является папкой.</translation>
    </message>
    <message>
        <source>A copy of the file %1 cannot be made.</source>
        <translation>Не удалось скопировать файл %1.</translation>
    </message>
</context>
<context>
    <name>ProgramLog</name>
    <message>
        <source>The log %1 cannot be written: %2</source>
        <translation>Не удалось записать журнал %1: %2</translation>
    </message>
</context>
<context>
    <name>RecorderAddress</name>
    <message>
        <source>an address has the form [login:password@]host[:port]</source>
        <translation>адрес имеет вид [login:password@]host[:port]</translation>
    </message>
    <message>
        <source>an IPv6 address cannot be given, use the host&apos;s name</source>
        <translation>адрес IPv6 указать нельзя, используйте имя узла</translation>
    </message>
    <message>
        <source>the address names no host</source>
        <translation>в адресе не указан узел</translation>
    </message>
    <message>
        <source>the port must be a number from 1 to 65535</source>
        <translation>порт должен быть числом от 1 до 65535</translation>
    </message>
    <message>
        <source>the login or the password has letters that this computer&apos;s encoding lacks, so the recorder would get others</source>
        <translation>в логине или пароле есть буквы, которых нет в кодировке этого компьютера, и регистратор получил бы другие</translation>
    </message>
</context>
<context>
    <name>RecorderLock</name>
    <message>
        <source>Another program is changing the settings of this recorder.</source>
        <translation>Настройки этого регистратора меняет другая программа.</translation>
    </message>
    <message>
        <source>%1 on %2 (process %3) is changing the settings of this recorder.</source>
        <translation>Настройки этого регистратора меняет %1 на %2 (процесс %3).</translation>
    </message>
    <message>
        <source>The file %1 cannot be made.</source>
        <translation>Не удалось создать файл %1.</translation>
    </message>
</context>
<context>
    <name>RecorderText</name>
    <message>
        <source>another companion is running</source>
        <translation>уже работает другой сопровождающий процесс</translation>
    </message>
    <message>
        <source>cannot create the folder %1</source>
        <translation>не удалось создать папку %1</translation>
    </message>
    <message>
        <source>cannot write %1</source>
        <translation>не удалось записать %1</translation>
    </message>
    <message>
        <source>--%1 takes a number from 0 to %2, not &quot;%3&quot;</source>
        <translation>--%1 принимает число от 0 до %2, а не «%3»</translation>
    </message>
    <message>
        <source>Behaves like a network video recorder: answers the configuration protocol, keeps its files in a folder and sends live video. %1 clients may be connected at a time.</source>
        <translation>Ведёт себя как сетевой видеорегистратор: отвечает по протоколу настройки, хранит свои файлы в папке и передаёт живое видео. Одновременно может быть клиентов: %1.</translation>
    </message>
    <message>
        <source>Listen on this TCP port; 0 picks a free one (default 5049).</source>
        <translation>Принимать соединения на этом порту TCP; 0 выбирает свободный (по умолчанию 5049).</translation>
    </message>
    <message>
        <source>Listen on this address of the computer (default 127.0.0.1: local clients only).</source>
        <translation>Принимать соединения на этом адресе компьютера (по умолчанию 127.0.0.1: только местные клиенты).</translation>
    </message>
    <message>
        <source>Folder of the configuration files, filled with the shipped model when it is missing or empty (default: a temporary folder, removed at the end).</source>
        <translation>Папка файлов конфигурации; если её нет или она пуста, заполняется поставляемой моделью (по умолчанию временная папка, удаляемая в конце).</translation>
    </message>
    <message>
        <source>The model that fills an empty folder: %1 (default: the first).</source>
        <translation>Модель, которой заполняется пустая папка: %1 (по умолчанию первая).</translation>
    </message>
    <message>
        <source>Send every answer this many milliseconds later (default 0).</source>
        <translation>Отправлять каждый ответ позже на столько миллисекунд (по умолчанию 0).</translation>
    </message>
    <message>
        <source>Be gone for this long when a client restarts the recorder (default 3000).</source>
        <translation>На сколько пропадать, когда клиент перезагружает регистратор (по умолчанию 3000).</translation>
    </message>
    <message>
        <source>Misbehave on the configuration protocol; may be given several times. FAULT is KIND or KIND@WHERE. KIND is one of %1. WHERE is login, a command such as &quot;GET NET CONFIG&quot;, the number of an answer of each connection (1 is the one to the login), or all (the default).</source>
        <translation>Нарушать протокол настройки; можно указать несколько раз. FAULT имеет вид KIND или KIND@WHERE. KIND — одно из %1. WHERE — это login, команда, например «GET NET CONFIG», номер ответа каждого соединения (1 — ответ на вход) или all (так по умолчанию).</translation>
    </message>
    <message>
        <source>Tell setup programs of this user the recorder&apos;s name, which the file &quot;streams&quot; holds as common/name.</source>
        <translation>Сообщать программам настройки этого пользователя название регистратора, которое стоит в файле «streams» как common/name.</translation>
    </message>
    <message>
        <source>End when standard input ends, as it does with the program that has started this one.</source>
        <translation>Завершить работу, когда закончится стандартный ввод, например вместе с запустившей программой.</translation>
    </message>
    <message>
        <source>Print every request and answer. Passwords are not shown.</source>
        <translation>Выводить каждый запрос и ответ. Пароли не показываются.</translation>
    </message>
    <message>
        <source>unexpected argument &quot;%1&quot;</source>
        <translation>лишний аргумент «%1»</translation>
    </message>
    <message>
        <source>--address takes an IP address, not &quot;%1&quot;</source>
        <translation>--address принимает IP-адрес, а не «%1»</translation>
    </message>
    <message>
        <source>--data takes a folder</source>
        <translation>--data принимает папку</translation>
    </message>
    <message>
        <source>there is no model &quot;%1&quot;, only: %2</source>
        <translation>нет модели «%1», есть только: %2</translation>
    </message>
    <message>
        <source>the name is not announced: %1</source>
        <translation>название не сообщается: %1</translation>
    </message>
    <message>
        <source>cannot listen on port %1: %2</source>
        <translation>не удалось открыть порт %1: %2</translation>
    </message>
    <message>
        <source>%1 takes no value</source>
        <translation>%1 не принимает значения</translation>
    </message>
    <message>
        <source>%1 takes one line</source>
        <translation>%1 принимает одну строку</translation>
    </message>
    <message>
        <source>%1 takes a number, less, more or none, not &quot;%2&quot;</source>
        <translation>%1 принимает число, less, more или none, а не «%2»</translation>
    </message>
    <message>
        <source>%1 takes a number from %2 to %3, not &quot;%4&quot;</source>
        <translation>%1 принимает число от %2 до %3, а не «%4»</translation>
    </message>
    <message>
        <source>%1 is possible @%2 only</source>
        <translation>%1 возможно только @%2</translation>
    </message>
    <message>
        <source>@ takes login, a command such as &quot;GET NET CONFIG&quot;, the number of an answer or all, not &quot;%1&quot;</source>
        <translation>@ принимает login, команду, например «GET NET CONFIG», номер ответа или all, а не «%1»</translation>
    </message>
    <message>
        <source>there is no fault &quot;%1&quot;, only %2</source>
        <translation>нет ошибки «%1», есть только %2</translation>
    </message>
    <message>
        <source>there is no video in it</source>
        <translation>в нём нет видео</translation>
    </message>
    <message>
        <source>out of memory</source>
        <translation>не хватает памяти</translation>
    </message>
    <message>
        <source>FFmpeg on this computer lacks the filter %1</source>
        <translation>в FFmpeg этого компьютера нет фильтра %1</translation>
    </message>
    <message>
        <source>FFmpeg on this computer cannot decode its video</source>
        <translation>FFmpeg этого компьютера не может декодировать его видео</translation>
    </message>
    <message>
        <source>there is no picture in it any more</source>
        <translation>изображений в нём больше нет</translation>
    </message>
    <message>
        <source>it has another codec than before</source>
        <translation>его кодек не тот, что раньше</translation>
    </message>
    <message>
        <source>the encoder %1 does not open: %2</source>
        <translation>кодер %1 не открывается: %2</translation>
    </message>
    <message>
        <source>FFmpeg on this computer cannot encode %1</source>
        <translation>FFmpeg этого компьютера не может кодировать %1</translation>
    </message>
    <message>
        <source>it exists already, and is not overwritten</source>
        <translation>он уже есть и не будет перезаписан</translation>
    </message>
    <message>
        <source>a stall lasts 1 to %1 milliseconds</source>
        <translation>остановка длится от 1 до %1 миллисекунд</translation>
    </message>
    <message>
        <source>there is no video: %1</source>
        <translation>видео нет: %1</translation>
    </message>
    <message>
        <source>there is no video: cannot show %1: %2</source>
        <translation>видео нет: не удалось показать %1: %2</translation>
    </message>
    <message>
        <source>cannot go on with %1: %2</source>
        <translation>не удалось продолжить %1: %2</translation>
    </message>
    <message>
        <source>the recording ends: cannot write %1: %2</source>
        <translation>запись прекращается: не удалось записать %1: %2</translation>
    </message>
    <message>
        <source>a picture has an even size from %1x%2 to %3x%4</source>
        <translation>размер изображения чётный, от %1x%2 до %3x%4</translation>
    </message>
    <message>
        <source>there are 1 to %1 pictures a second</source>
        <translation>кадров в секунду бывает от 1 до %1</translation>
    </message>
    <message>
        <source>a fragment has 1 to %1 bytes</source>
        <translation>во фрагменте от 1 до %1 байтов</translation>
    </message>
    <message>
        <source>a number from %1 to %2</source>
        <translation>число от %1 до %2</translation>
    </message>
    <message>
        <source>a size such as 640x360</source>
        <translation>размер, например 640x360</translation>
    </message>
    <message>
        <source>a file</source>
        <translation>файл</translation>
    </message>
    <message>
        <source>--%1 takes %2, not &quot;%3&quot;</source>
        <translation>--%1 принимает %2, а не «%3»</translation>
    </message>
    <message>
        <source>--%1 says nothing without --%2</source>
        <translation>--%1 без --%2 не имеет смысла</translation>
    </message>
    <message>
        <source>--%1: size and codec change with the test picture only, not with --%2</source>
        <translation>--%1: размер и кодек меняются только у тестового изображения, а не с --%2</translation>
    </message>
    <message>
        <source>--%1: that is the file that --%2 shows</source>
        <translation>--%1: это тот файл, который показывает --%2</translation>
    </message>
    <message>
        <source>--%1: the file has its own size and rate</source>
        <translation>--%1: у файла свои размер и частота</translation>
    </message>
    <message>
        <source>Show this video file, again and again, instead of the test picture.</source>
        <translation>Вместо тестового изображения снова и снова показывать этот видеофайл.</translation>
    </message>
    <message>
        <source>Encode the test picture, and files with other codecs, as %1 (default %2).</source>
        <translation>Кодировать тестовое изображение и файлы с другими кодеками как %1 (по умолчанию %2).</translation>
    </message>
    <message>
        <source>Size of the test picture (default %1x%2).</source>
        <translation>Размер тестового изображения (по умолчанию %1x%2).</translation>
    </message>
    <message>
        <source>Test pictures a second (default %1).</source>
        <translation>Тестовых изображений в секунду (по умолчанию %1).</translation>
    </message>
    <message>
        <source>Cut frames into fragments of this many bytes (default %1).</source>
        <translation>Делить кадры на фрагменты по столько байтов (по умолчанию %1).</translation>
    </message>
    <message>
        <source>Damage the video; LIST has one or more of %1 with commas between them. A stall lasts %2 ms, or as long as stall=MS says.</source>
        <translation>Повреждать видео; в LIST через запятую одно или несколько из %1. Остановка длится %2 мс или сколько задано в stall=MS.</translation>
    </message>
    <message>
        <source>Each fault comes once in so many pictures (default %1).</source>
        <translation>Каждая ошибка бывает один раз за столько изображений (по умолчанию %1).</translation>
    </message>
    <message>
        <source>Another seed makes other damage (default %1).</source>
        <translation>Другое начальное число даёт другие повреждения (по умолчанию %1).</translation>
    </message>
    <message>
        <source>Keep the video in this file as a client gets it, whether one watches or not. The file must not exist yet.</source>
        <translation>Сохранять видео в этом файле так, как его получает клиент, даже если никто не смотрит. Файла ещё не должно быть.</translation>
    </message>
    <message>
        <source>How /snapshot.jpg is logged in to over HTTP: %1 (default both).</source>
        <translation>Как входить по HTTP для /snapshot.jpg: %1 (по умолчанию both).</translation>
    </message>
    <message>
        <source>cannot show %1: %2</source>
        <translation>не удалось показать %1: %2</translation>
    </message>
    <message>
        <source>cannot record to %1: %2</source>
        <translation>не удалось записать в %1: %2</translation>
    </message>
</context>
<context>
    <name>RetryGesture</name>
    <message>
        <source>Click, or press Enter, to try again now</source>
        <translation>Щёлкните или нажмите Enter, чтобы повторить сейчас</translation>
    </message>
</context>
<context>
    <name>SaveCompletion</name>
    <message>
        <source>Saving the settings</source>
        <translation>Сохранение настроек</translation>
    </message>
    <message>
        <source>Paravue Setup</source>
        <translation>Paravue Setup</translation>
    </message>
    <message>
        <source>Stop sending? %1 of %2 files have arrived at the recorder.</source>
        <translation>Остановить отправку? Получено регистратором файлов: %1 из %2.</translation>
    </message>
    <message>
        <source>Sending was stopped.</source>
        <translation>Отправка остановлена.</translation>
    </message>
    <message>
        <source>The recorder does not answer</source>
        <translation>Регистратор не отвечает</translation>
    </message>
    <message>
        <source>Not everything could be sent.</source>
        <translation>Отправить удалось не всё.</translation>
    </message>
    <message>
        <source>Arrived: %1</source>
        <translation>Получено: %1</translation>
    </message>
    <message>
        <source>Not done: %1</source>
        <translation>Не выполнено: %1</translation>
    </message>
    <message>
        <source>Not sent, and replaced by what the recorder has: %1</source>
        <translation>Не отправлено и заменено тем, что есть в регистраторе: %1</translation>
    </message>
    <message>
        <source>Not sent: %1</source>
        <translation>Не отправлено: %1</translation>
    </message>
    <message>
        <source>Sent, but not answered: %1</source>
        <translation>Отправлено, но ответа не было: %1</translation>
    </message>
</context>
<context>
    <name>SetupProgram</name>
    <message>
        <source>The snapshot could not be saved.</source>
        <translation>Не удалось сохранить снимок настроек.</translation>
    </message>
    <message>
        <source>there is no screen to show the window on. Set DISPLAY or WAYLAND_DISPLAY; with QT_QPA_PLATFORM=offscreen, --screenshot needs none.</source>
        <translation>нет экрана, на котором можно показать окно. Задайте DISPLAY или WAYLAND_DISPLAY; для --screenshot с QT_QPA_PLATFORM=offscreen экран не нужен.</translation>
    </message>
    <message>
        <source>Try paravue-setup --help.</source>
        <translation>Смотрите paravue-setup --help.</translation>
    </message>
    <message>
        <source>there is no screen to show the window on: Qt&apos;s plug-in for it was not found, which is qwindows.dll in the folder &quot;platforms&quot; beside the program. Install the program again, or name the folder with QT_QPA_PLATFORM_PLUGIN_PATH.</source>
        <translation>нет экрана, на котором можно показать окно: не найден подключаемый модуль Qt для него, qwindows.dll в папке «platforms» рядом с программой. Установите программу заново или укажите папку в QT_QPA_PLATFORM_PLUGIN_PATH.</translation>
    </message>
</context>
<context>
    <name>ShownValue</name>
    <message>
        <source>(none)</source>
        <translation>(нет)</translation>
    </message>
</context>
<context>
    <name>SilenceText</name>
    <message>
        <source>No answer from the recorder for %1 s</source>
        <translation>Регистратор не отвечает %1 с</translation>
    </message>
</context>
<context>
    <name>Snapshot</name>
    <message>
        <source>The snapshot is of the model &quot;%1&quot;, and this recorder is a &quot;%2&quot;.</source>
        <translation>Снимок настроек сделан с модели «%1», а этот регистратор — «%2».</translation>
    </message>
    <message>
        <source>The snapshot was taken with firmware %1, and this recorder has firmware %2.</source>
        <translation>Снимок настроек сделан с прошивкой %1, а в этом регистраторе прошивка %2.</translation>
    </message>
</context>
<context>
    <name>SnapshotArchive</name>
    <message>
        <source>The file is no snapshot of a recorder.</source>
        <translation>Файл не является снимком настроек регистратора.</translation>
    </message>
    <message>
        <source>The snapshot is damaged.</source>
        <translation>Снимок настроек повреждён.</translation>
    </message>
    <message>
        <source>The snapshot is larger than the configuration of any recorder.</source>
        <translation>Снимок больше, чем бывают настройки регистратора.</translation>
    </message>
    <message>
        <source>The snapshot holds a file with the wrong name &quot;%1&quot;.</source>
        <translation>В снимке настроек есть файл с недопустимым именем «%1».</translation>
    </message>
    <message>
        <source>The file &quot;%1&quot; in the snapshot is not what was kept: its checksum is wrong.</source>
        <translation>Файл «%1» в снимке отличается от сохранённого: неверная контрольная сумма.</translation>
    </message>
    <message>
        <source>The snapshot %1 cannot be read: %2</source>
        <translation>Не удалось прочитать снимок настроек %1: %2</translation>
    </message>
    <message>
        <source>The snapshot cannot be packed.</source>
        <translation>Не удалось упаковать снимок настроек.</translation>
    </message>
    <message>
        <source>The snapshot %1 cannot be written: %2</source>
        <translation>Не удалось записать снимок настроек %1: %2</translation>
    </message>
</context>
<context>
    <name>SnapshotFolder</name>
    <message>
        <source>The folder %1 for snapshots cannot be made.</source>
        <translation>Не удалось создать папку %1 для снимков настроек.</translation>
    </message>
</context>
<context>
    <name>SnapshotManifest</name>
    <message>
        <source>The list of contents of the snapshot is damaged.</source>
        <translation>Опись содержимого снимка настроек повреждена.</translation>
    </message>
    <message>
        <source>The file is no snapshot of a recorder.</source>
        <translation>Файл не является снимком настроек регистратора.</translation>
    </message>
    <message>
        <source>The snapshot was written by a newer version of this program.</source>
        <translation>Снимок настроек записан более новой версией программы.</translation>
    </message>
</context>
<context>
    <name>TemporaryFolder</name>
    <message>
        <source>%1 cannot be written</source>
        <translation>не удалось записать в %1</translation>
    </message>
</context>
<context>
    <name>XmlLimits</name>
    <message>
        <source>it has more than %1 comments and instructions</source>
        <translation>в нём больше %1 комментариев и инструкций</translation>
    </message>
    <message>
        <source>it has too many elements with attributes</source>
        <translation>в нём слишком много элементов с атрибутами</translation>
    </message>
    <message>
        <source>it declares entities</source>
        <translation>в нём объявлены сущности</translation>
    </message>
    <message>
        <source>it has more than %1 elements</source>
        <translation>в нём больше %1 элементов</translation>
    </message>
    <message>
        <source>one element has more than %1 attributes</source>
        <translation>у одного из элементов больше %1 атрибутов</translation>
    </message>
    <message>
        <source>its elements are nested more than %1 levels deep</source>
        <translation>вложенность его элементов больше %1 уровней</translation>
    </message>
    <message>
        <source>its text encoding is not supported</source>
        <translation>его кодировка не поддерживается</translation>
    </message>
</context>
<context>
    <name>cDiskFitness</name>
    <message>
        <source>%1%</source>
        <translation>%1%</translation>
    </message>
</context>
<context>
    <name>cDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Вход</translation>
    </message>
    <message>
        <source>Login</source>
        <translation>Логин</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Пароль</translation>
    </message>
    <message>
        <source>Remember password</source>
        <translation>Запомнить пароль</translation>
    </message>
    <message>
        <source>Forget the remembered login</source>
        <translation>Забыть запомненный вход</translation>
    </message>
    <message>
        <source>The remembered login is forgotten.</source>
        <translation>Запомненный вход удалён.</translation>
    </message>
    <message>
        <source>The recorder has refused the login.</source>
        <translation>Регистратор отклонил вход.</translation>
    </message>
    <message>
        <source>The login has letters that this computer cannot send.</source>
        <translation>В логине есть буквы, которые этот компьютер не может передать.</translation>
    </message>
    <message>
        <source>The password has letters that this computer cannot send.</source>
        <translation>В пароле есть буквы, которые этот компьютер не может передать.</translation>
    </message>
    <message>
        <source>Please enter authorization information for</source>
        <translation>Введите логин и пароль для</translation>
    </message>
    <message>
        <source>Hide the password (Alt+F8)</source>
        <translation>Скрыть пароль (Alt+F8)</translation>
    </message>
    <message>
        <source>Show the password (Alt+F8)</source>
        <translation>Показать пароль (Alt+F8)</translation>
    </message>
    <message>
        <source>The remembered logins could not be read. Their damaged file was kept as %1.</source>
        <translation>Не удалось прочитать запомненные логины и пароли. Их повреждённый файл сохранён как %1.</translation>
    </message>
</context>
<context>
    <name>paravue::AlarmZoneEditor</name>
    <message>
        <source>Zone %1</source>
        <translation>Зона %1</translation>
    </message>
</context>
<context>
    <name>paravue::CameraLink</name>
    <message>
        <source>The recorder does not turn the camera. Perhaps this login is not allowed to.</source>
        <translation>Регистратор не поворачивает камеру. Возможно, у этого пользователя нет прав.</translation>
    </message>
    <message>
        <source>Point %1 is not set.</source>
        <translation>Точка %1 не задана.</translation>
    </message>
    <message>
        <source>The camera has not turned. Perhaps it is there already, or this login may not turn it.</source>
        <translation>Камера не повернулась. Возможно, она уже там или у этого пользователя нет прав.</translation>
    </message>
    <message>
        <source>The recorder does not say whether it takes a point from this login, for which it has not turned the camera so far.</source>
        <translation>Регистратор не сообщает, принимает ли он точку от этого пользователя: камеру он для него пока не поворачивал.</translation>
    </message>
    <message>
        <source>Point %1 has no position to which the camera could turn.</source>
        <translation>У точки %1 нет положения, в которое камера могла бы повернуться.</translation>
    </message>
</context>
<context>
    <name>paravue::CellGridEditor</name>
    <message>
        <source>Rectangle</source>
        <translation>Прямоугольник</translation>
    </message>
    <message>
        <source>Brush</source>
        <translation>Кисть</translation>
    </message>
    <message>
        <source>column %1, row %2</source>
        <translation>столбец %1, строка %2</translation>
    </message>
    <message>
        <source>columns %1 to %2, rows %3 to %4</source>
        <translation>столбцы с %1 по %2, строки с %3 по %4</translation>
    </message>
    <message>
        <source>not marked</source>
        <translation>не отмечено</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1; painting with %2</source>
        <translation>%1; рисование: %2</translation>
    </message>
    <message>
        <source>%1; %2</source>
        <translation>%1; %2</translation>
    </message>
    <message>
        <source>%1; brush</source>
        <translation>%1; кисть</translation>
    </message>
    <message>
        <source>Not pasted: the clipboard holds no cells</source>
        <translation>Не вставлено: в буфере обмена нет ячеек</translation>
    </message>
    <message>
        <source>Not pasted: the copied grid has %1 columns and %2 rows, this one has %3 and %4</source>
        <translation>Не вставлено: скопированная сетка имеет столбцов: %1, строк: %2, а эта — столбцов: %3, строк: %4</translation>
    </message>
    <message>
        <source>Not pasted: there is no zone %1 here</source>
        <translation>Не вставлено: здесь нет зоны %1</translation>
    </message>
    <message>
        <source>Copy all cells</source>
        <translation>Копировать все ячейки</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Вставить</translation>
    </message>
    <message>
        <source>Mark selected cells</source>
        <translation>Отметить выделенные ячейки</translation>
    </message>
    <message>
        <source>Clear selected cells</source>
        <translation>Очистить выделенные ячейки</translation>
    </message>
    <message>
        <source>Select all cells</source>
        <translation>Выделить все ячейки</translation>
    </message>
    <message>
        <source>Invert</source>
        <translation>Обратить</translation>
    </message>
    <message>
        <source>Clear all</source>
        <translation>Очистить всё</translation>
    </message>
</context>
<context>
    <name>paravue::ChangeTracking</name>
    <message>
        <source>Show what was changed and not sent yet, and what is wrong (Ctrl+R)</source>
        <translation>Показать, что изменено и ещё не отправлено и где есть ошибки (Ctrl+R)</translation>
    </message>
    <message>
        <source>Follows from other values</source>
        <translation>Следует из других значений</translation>
    </message>
    <message>
        <source>Show the problem</source>
        <translation>Показать ошибку</translation>
    </message>
    <message>
        <source>Send all the same</source>
        <translation>Всё равно отправить</translation>
    </message>
    <message>
        <source>Go on editing</source>
        <translation>Продолжить правку</translation>
    </message>
    <message>
        <source>There are fields with values that the recorder may refuse.</source>
        <translation>В некоторых полях значения, которые регистратор может отклонить.</translation>
    </message>
    <message>
        <source>%1
and %2 more</source>
        <translation>%1
и ещё %2</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Сохранить</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Отправить</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Не сохранять</translation>
    </message>
    <message>
        <source>There are changes that were not saved.</source>
        <translation>Есть несохранённые изменения.</translation>
    </message>
    <message>
        <source>There are changes that were not sent to the recorder.</source>
        <translation>Есть изменения, не отправленные в регистратор.</translation>
    </message>
    <message>
        <source>Enter opens the dialog &quot;%1&quot;.</source>
        <translation>Enter открывает диалог «%1».</translation>
    </message>
    <message>
        <source>This is in the dialog &quot;%1&quot;, which opens by itself.</source>
        <translation>Это в диалоге «%1», который открывается сам.</translation>
    </message>
    <message>
        <source>This is in the dialog &quot;%1&quot;. Enter shows where the way there begins: %2</source>
        <translation>Это в диалоге «%1». Enter покажет, где начинается путь к нему: %2</translation>
    </message>
    <message>
        <source>Points of a camera that are not set yet would be missing.</source>
        <translation>Точек камеры, которые ещё не заданы, не было бы среди отправленных.</translation>
    </message>
</context>
<context>
    <name>paravue::CheckedSave</name>
    <message>
        <source>Fetching what the recorder has now</source>
        <translation>Получение текущих настроек регистратора</translation>
    </message>
    <message>
        <source>Go on editing</source>
        <translation>Продолжить правку</translation>
    </message>
    <message>
        <source>What the recorder has now could not be fetched, so what somebody else has changed would be lost. Send all the same?</source>
        <translation>Не удалось получить текущие настройки регистратора, поэтому чужие изменения будут потеряны. Всё равно отправить?</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Отправить</translation>
    </message>
    <message>
        <source>Waiting for the recorder</source>
        <translation>Ожидание регистратора</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Остановить</translation>
    </message>
    <message>
        <source>Sending was stopped.</source>
        <translation>Отправка остановлена.</translation>
    </message>
    <message>
        <source>Not everything could be sent.</source>
        <translation>Отправить удалось не всё.</translation>
    </message>
    <message>
        <source>The comparison was stopped</source>
        <translation>Сравнение остановлено</translation>
    </message>
    <message>
        <source>Stop sending? %1 of %2 files have arrived at the recorder.</source>
        <translation>Остановить отправку? Получено регистратором файлов: %1 из %2.</translation>
    </message>
    <message>
        <source>Nothing was sent, and the changes are lost: after the new login everything was fetched from the recorder again.</source>
        <translation>Ничего не отправлено, изменения потеряны: после нового входа всё было получено из регистратора заново.</translation>
    </message>
    <message>
        <source>Nothing was sent.</source>
        <translation>Ничего не отправлено.</translation>
    </message>
</context>
<context>
    <name>paravue::DialogFrame</name>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
</context>
<context>
    <name>paravue::EditActions</name>
    <message>
        <source>Undo</source>
        <translation>Отменить</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Повторить</translation>
    </message>
</context>
<context>
    <name>paravue::FieldProblems</name>
    <message>
        <source>Not allowed here</source>
        <translation>Здесь не допускается</translation>
    </message>
    <message>
        <source>Not complete</source>
        <translation>Не закончено</translation>
    </message>
</context>
<context>
    <name>paravue::FindDialog</name>
    <message>
        <source>Changed only</source>
        <translation>Только изменённые</translation>
    </message>
    <message>
        <source>With problems</source>
        <translation>С ошибками</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>Поиск</translation>
    </message>
    <message>
        <source>Caption, choice, value or address</source>
        <translation>Надпись, вариант, значение или адрес</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Настройка</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>Место</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Группа</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Значение</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Адрес</translation>
    </message>
    <message>
        <source>Found</source>
        <translation>Найдено</translation>
    </message>
    <message>
        <source>The first %1 of %2</source>
        <translation>Первые %1 из %2</translation>
    </message>
</context>
<context>
    <name>paravue::FindingsView</name>
    <message>
        <source>Error: %1</source>
        <translation>Ошибка: %1</translation>
    </message>
    <message>
        <source>Warning: %1</source>
        <translation>Предупреждение: %1</translation>
    </message>
    <message>
        <source>This is about no control.</source>
        <translation>Это не относится к элементам управления.</translation>
    </message>
    <message>
        <source>Shows the control.</source>
        <translation>Показывает элемент управления.</translation>
    </message>
    <message>
        <source>No problems were found.</source>
        <translation>Ошибок не найдено.</translation>
    </message>
    <message>
        <source>Findings in %1: %2</source>
        <translation>Замечаний в %1: %2</translation>
    </message>
</context>
<context>
    <name>paravue::ForeignChangesDialog</name>
    <message>
        <source>Changed by somebody else</source>
        <translation>Изменено кем-то другим</translation>
    </message>
    <message>
        <source>These values were changed at the recorder while this window was open. They are kept; tick those that are to get your value instead.</source>
        <translation>Эти значения изменились в регистраторе, пока было открыто окно. Они останутся; отметьте те, которые нужно заменить вашими.</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Настройка</translation>
    </message>
    <message>
        <source>Was</source>
        <translation>Было</translation>
    </message>
    <message>
        <source>Recorder now</source>
        <translation>Сейчас в регистраторе</translation>
    </message>
    <message>
        <source>Send mine</source>
        <translation>Отправить моё</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Продолжить</translation>
    </message>
    <message>
        <source>Go on editing</source>
        <translation>Продолжить правку</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Адрес</translation>
    </message>
    <message>
        <source>Entries of a list were added, removed or renamed, so your values may belong to another entry than the one that has their position now. Such a list gets your values as a whole.</source>
        <translation>Записи списка были добавлены, удалены или переименованы, поэтому ваши значения могут относиться не к той записи, которая теперь стоит на их месте. Такой список получает ваши значения целиком.</translation>
    </message>
</context>
<context>
    <name>paravue::HistoryDialog</name>
    <message>
        <source>History</source>
        <translation>История</translation>
    </message>
    <message>
        <source>Kept</source>
        <translation>Сохранён</translation>
    </message>
    <message>
        <source>Changed afterwards</source>
        <translation>Изменено потом</translation>
    </message>
    <message>
        <source>Remark</source>
        <translation>Примечание</translation>
    </message>
    <message>
        <source>Snapshots, the newest first</source>
        <translation>Снимки настроек, сначала новые</translation>
    </message>
    <message>
        <source>Select one to compare it with the present settings, or two to compare them</source>
        <translation>Выберите один снимок, чтобы сравнить его с текущими настройками, или два, чтобы сравнить их</translation>
    </message>
    <message>
        <source>Different values</source>
        <translation>Различающиеся значения</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Настройка</translation>
    </message>
    <message>
        <source>Snapshot</source>
        <translation>Снимок</translation>
    </message>
    <message>
        <source>Present</source>
        <translation>Сейчас</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Адрес</translation>
    </message>
    <message>
        <source>Only what this window edits</source>
        <translation>Только то, что правит это окно</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Восстановить</translation>
    </message>
    <message>
        <source>Set the selected values to those of the snapshot (Enter)</source>
        <translation>Вернуть выбранным настройкам значения из снимка (Enter)</translation>
    </message>
    <message>
        <source>Restore all</source>
        <translation>Восстановить все</translation>
    </message>
    <message>
        <source>Set all listed values to those of the snapshot</source>
        <translation>Вернуть всем настройкам списка значения из снимка</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Показать</translation>
    </message>
    <message>
        <source>Show the snapshot in a window of its own</source>
        <translation>Показать снимок в отдельном окне</translation>
    </message>
    <message>
        <source>Present settings</source>
        <translation>Текущие настройки</translation>
    </message>
    <message>
        <source>Edited without the recorder</source>
        <translation>Правка без регистратора</translation>
    </message>
    <message>
        <source>1 value</source>
        <translation>1 значение</translation>
    </message>
    <message>
        <source>No snapshot was kept yet. One is kept before each sending.</source>
        <translation>Снимков пока нет. Снимок сохраняется перед каждой отправкой.</translation>
    </message>
    <message>
        <source>Select a snapshot to compare it with the present settings.</source>
        <translation>Выберите снимок, чтобы сравнить его с текущими настройками.</translation>
    </message>
    <message>
        <source>Select one or two snapshots.</source>
        <translation>Выберите один или два снимка.</translation>
    </message>
    <message>
        <source>Passwords are not in this snapshot: they stay as they are.</source>
        <translation>Паролей в этом снимке нет: они останутся как есть.</translation>
    </message>
    <message>
        <source>1 different value</source>
        <translation>1 отличие</translation>
    </message>
    <message>
        <source>%1 (and %2 that this window does not edit)</source>
        <translation>%1 (и ещё %2 вне этого окна)</translation>
    </message>
    <message numerus="yes">
        <source>%n values</source>
        <translation>
            <numerusform>%n значение</numerusform>
            <numerusform>%n значения</numerusform>
            <numerusform>%n значений</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n different values</source>
        <translation>
            <numerusform>%n отличие</numerusform>
            <numerusform>%n отличия</numerusform>
            <numerusform>%n отличий</numerusform>
        </translation>
    </message>
    <message>
        <source>Entries of a list were added, removed or renamed since, and the snapshot has no passwords for them: the values of the list cannot be restored.</source>
        <translation>С тех пор записи списка были добавлены, удалены или переименованы, а паролей к ним в снимке нет: значения списка восстановить нельзя.</translation>
    </message>
    <message>
        <source>Entries of a list were added, removed or renamed since: the list is restored as a whole.</source>
        <translation>С тех пор записи списка были добавлены, удалены или переименованы: список восстанавливается целиком.</translation>
    </message>
</context>
<context>
    <name>paravue::HttpPictureReceiver</name>
    <message>
        <source>No answer in time</source>
        <translation>Нет ответа в срок</translation>
    </message>
    <message>
        <source>Wrong address of the picture</source>
        <translation>Неверный адрес изображения</translation>
    </message>
    <message>
        <source>Picture not at this address</source>
        <translation>По этому адресу нет изображения</translation>
    </message>
    <message>
        <source>Picture too large</source>
        <translation>Изображение слишком велико</translation>
    </message>
    <message>
        <source>Not a picture</source>
        <translation>Это не изображение</translation>
    </message>
    <message>
        <source>Login refused</source>
        <translation>Вход отклонён</translation>
    </message>
    <message>
        <source>Connection lost</source>
        <translation>Соединение потеряно</translation>
    </message>
    <message>
        <source>Certificate not trusted</source>
        <translation>Нет доверия к сертификату</translation>
    </message>
    <message>
        <source>Recorder reports error %1</source>
        <translation>Регистратор сообщает об ошибке %1</translation>
    </message>
    <message>
        <source>No connection</source>
        <translation>Нет соединения</translation>
    </message>
</context>
<context>
    <name>paravue::K9mButton</name>
    <message>
        <source>On</source>
        <translation>Включено</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Выключено</translation>
    </message>
</context>
<context>
    <name>paravue::LanguageChoice</name>
    <message>
        <source>the recorder&apos;s description has no translations, so --language cannot choose one</source>
        <translation>в описании регистратора нет переводов, поэтому --language выбирать не из чего</translation>
    </message>
    <message>
        <source>the recorder&apos;s description has no texts in the language &quot;%1&quot;, only in: %2</source>
        <translation>в описании регистратора нет текстов на языке «%1», есть только: %2</translation>
    </message>
</context>
<context>
    <name>paravue::LiveView</name>
    <message>
        <source>No signal</source>
        <translation>Нет сигнала</translation>
    </message>
</context>
<context>
    <name>paravue::LoadingView</name>
    <message>
        <source>You can close this window and try again.</source>
        <translation>Вы можете закрыть это окно и попробовать ещё раз.</translation>
    </message>
    <message>
        <source>The settings could not be loaded</source>
        <translation>Не удалось загрузить настройки</translation>
    </message>
    <message>
        <source>The settings of %1 could not be loaded</source>
        <translation>Не удалось загрузить настройки %1</translation>
    </message>
    <message>
        <source>Connecting to the recorder</source>
        <translation>Соединение с регистратором</translation>
    </message>
    <message>
        <source>Connecting to %1</source>
        <translation>Соединение с %1</translation>
    </message>
</context>
<context>
    <name>paravue::MaskEditor</name>
    <message>
        <source>Masked</source>
        <translation>Скрыто</translation>
    </message>
</context>
<context>
    <name>paravue::MergeDialog</name>
    <message>
        <source>Edits without the recorder</source>
        <translation>Правка без регистратора</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Настройка</translation>
    </message>
    <message>
        <source>Snapshot</source>
        <translation>Снимок</translation>
    </message>
    <message>
        <source>Edited</source>
        <translation>Правка</translation>
    </message>
    <message>
        <source>Recorder now</source>
        <translation>В регистраторе</translation>
    </message>
    <message>
        <source>Remark</source>
        <translation>Примечание</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Адрес</translation>
    </message>
    <message>
        <source>Edits to take over</source>
        <translation>Правка для переноса</translation>
    </message>
    <message>
        <source>Take over</source>
        <translation>Перенести</translation>
    </message>
    <message>
        <source>Make the checked edits in the window, where they can be reviewed and sent</source>
        <translation>Внести отмеченную правку в окно, где её можно просмотреть и отправить</translation>
    </message>
    <message>
        <source>The snapshot is of the recorder at %1.</source>
        <translation>Снимок настроек сделан с регистратора %1.</translation>
    </message>
    <message>
        <source>The checked values become as they were edited. Nothing is sent yet.</source>
        <translation>Отмеченные значения станут такими, как в правке. Пока ничего не отправляется.</translation>
    </message>
    <message>
        <source>Changed on the recorder too</source>
        <translation>Изменено и в регистраторе</translation>
    </message>
    <message>
        <source>The recorder has it already</source>
        <translation>Уже есть в регистраторе</translation>
    </message>
    <message>
        <source>The recorder takes no such file</source>
        <translation>Такой файл регистратор не принимает</translation>
    </message>
    <message>
        <source>Values that were changed on the recorder too, or may have been, are not checked. Check those that are to become as they were edited.</source>
        <translation>Значения, которые изменены или могли измениться и в регистраторе, не отмечены. Отметьте те, которые должны стать такими, как в правке.</translation>
    </message>
    <message>
        <source>May have changed there too</source>
        <translation>Могло измениться и там</translation>
    </message>
    <message>
        <source>(left out)</source>
        <translation>(не сохранено)</translation>
    </message>
    <message>
        <source>Entries of a list were added, removed or renamed, and the snapshot has no passwords for them: the edits of the list cannot be taken over.</source>
        <translation>Записи списка были добавлены, удалены или переименованы, а паролей для них в снимке нет: правки списка нельзя перенести.</translation>
    </message>
    <message>
        <source>Entries of a list were added, removed or renamed: the list is taken over as a whole.</source>
        <translation>Записи списка были добавлены, удалены или переименованы: список переносится целиком.</translation>
    </message>
    <message>
        <source>The list lacks passwords</source>
        <translation>В списке нет паролей</translation>
    </message>
    <message>
        <source>Only with the whole list</source>
        <translation>Только вместе со всем списком</translation>
    </message>
</context>
<context>
    <name>paravue::PackageListView</name>
    <message>
        <source>No packages</source>
        <translation>Нет пакетов</translation>
    </message>
</context>
<context>
    <name>paravue::PictureActions</name>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>Enlarge</source>
        <translation>Увеличить</translation>
    </message>
    <message>
        <source>Save picture…</source>
        <translation>Сохранить изображение…</translation>
    </message>
    <message>
        <source>Copy picture</source>
        <translation>Копировать изображение</translation>
    </message>
    <message>
        <source>Fetch a picture now</source>
        <translation>Получить изображение сейчас</translation>
    </message>
    <message>
        <source>Stream details</source>
        <translation>Сведения о потоке</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>Изображение</translation>
    </message>
    <message>
        <source>Picture taken %1</source>
        <translation>Снимок сделан %1</translation>
    </message>
    <message>
        <source>Picture fetched %1</source>
        <translation>Снимок получен %1</translation>
    </message>
</context>
<context>
    <name>paravue::PictureView</name>
    <message>
        <source>%1 × %2 pixels</source>
        <translation>%1 × %2 пикселей</translation>
    </message>
    <message>
        <source>%1; %2</source>
        <translation>%1; %2</translation>
    </message>
    <message>
        <source>No picture from the camera yet</source>
        <translation>Изображения с камеры пока нет</translation>
    </message>
</context>
<context>
    <name>paravue::PtzCalibrator</name>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>Point %1 of %2</source>
        <translation>Точка %1 из %2</translation>
    </message>
    <message>
        <source>%1% from the left, %2% from the top</source>
        <translation>%1% слева, %2% сверху</translation>
    </message>
    <message>
        <source>not set</source>
        <translation>не задана</translation>
    </message>
    <message>
        <source>%1: %2. %3</source>
        <translation>%1: %2. %3</translation>
    </message>
    <message>
        <source>%1. Gone to point %2</source>
        <translation>%1. Переход к точке %2</translation>
    </message>
    <message>
        <source>Point %1 is set as soon as the camera stands still.</source>
        <translation>Точка %1 будет задана, как только камера остановится.</translation>
    </message>
    <message>
        <source>Name of point %1</source>
        <translation>Название точки %1</translation>
    </message>
    <message>
        <source>Point %1 was not set, as the camera position is not known any more.</source>
        <translation>Точка %1 не задана: положение камеры больше не известно.</translation>
    </message>
    <message>
        <source>Go to point %1</source>
        <translation>Перейти к точке %1</translation>
    </message>
    <message>
        <source>Set point %1</source>
        <translation>Задать точку %1</translation>
    </message>
    <message>
        <source>Name point %1…</source>
        <translation>Назвать точку %1…</translation>
    </message>
    <message>
        <source>Remove point %1</source>
        <translation>Удалить точку %1</translation>
    </message>
    <message>
        <source>Point %1 was not set, as it has got another value.</source>
        <translation>Точка %1 не задана: она получила другое значение.</translation>
    </message>
    <message>
        <source>Points %1 were not set, as they have got other values.</source>
        <translation>Точки %1 не заданы: они получили другие значения.</translation>
    </message>
    <message>
        <source>Points %1 were not set, as the camera position is not known any more.</source>
        <translation>Точки %1 не заданы: положение камеры больше не известно.</translation>
    </message>
    <message>
        <source>Points %1 are set as soon as the camera stands still.</source>
        <translation>Точки %1 будут заданы, как только камера остановится.</translation>
    </message>
</context>
<context>
    <name>paravue::PtzSteering</name>
    <message>
        <source>Drag, or press an arrow key, to turn the camera. The wheel, + and − zoom. A double click turns the camera there, 1 to 9 turn it to a point.</source>
        <translation>Перетаскивайте или нажимайте клавиши со стрелками, чтобы повернуть камеру. Колесо, + и − меняют масштаб. Двойной щелчок наводит камеру на место, клавиши от 1 до 9 — на точку.</translation>
    </message>
</context>
<context>
    <name>paravue::PtzVideoInput</name>
    <message>
        <source>%1; %2</source>
        <translation>%1; %2</translation>
    </message>
</context>
<context>
    <name>paravue::PtzView</name>
    <message>
        <source>Camera position not known</source>
        <translation>Положение камеры неизвестно</translation>
    </message>
    <message>
        <source>Pan %1, tilt %2</source>
        <translation>Поворот %1, наклон %2</translation>
    </message>
    <message>
        <source>%1, zoom %2</source>
        <translation>%1, масштаб %2</translation>
    </message>
</context>
<context>
    <name>paravue::ReviewDialog</name>
    <message>
        <source>Setting</source>
        <translation>Настройка</translation>
    </message>
    <message>
        <source>Problem</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Problems</source>
        <translation>Ошибки</translation>
    </message>
    <message>
        <source>Take back</source>
        <translation>Вернуть</translation>
    </message>
    <message>
        <source>Set the selected values to those of the recorder (Delete)</source>
        <translation>Вернуть выбранным настройкам значения регистратора (Delete)</translation>
    </message>
    <message>
        <source>Take all back</source>
        <translation>Вернуть все</translation>
    </message>
    <message>
        <source>Set all values to those of the recorder</source>
        <translation>Вернуть всем настройкам значения регистратора</translation>
    </message>
    <message>
        <source>Go there</source>
        <translation>Перейти</translation>
    </message>
    <message>
        <source>Show where the value is edited (Enter)</source>
        <translation>Показать, где правится значение (Enter)</translation>
    </message>
    <message>
        <source>Changes</source>
        <translation>Изменения</translation>
    </message>
    <message>
        <source>Recorder</source>
        <translation>В регистраторе</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Новое</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Адрес</translation>
    </message>
    <message>
        <source>Changes that were not sent yet</source>
        <translation>Ещё не отправленные изменения</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Отправить</translation>
    </message>
    <message>
        <source>Show where the value is edited</source>
        <translation>Показать, где правится значение</translation>
    </message>
    <message>
        <source>Go on editing</source>
        <translation>Продолжить правку</translation>
    </message>
</context>
<context>
    <name>paravue::SaveCheck</name>
    <message>
        <source>There is no recorder to ask</source>
        <translation>Нет регистратора, который можно спросить</translation>
    </message>
    <message>
        <source>The copy of &quot;%1&quot; cannot be read</source>
        <translation>Не удалось прочитать копию «%1»</translation>
    </message>
</context>
<context>
    <name>paravue::SaveProgressDialog</name>
    <message>
        <source>Paravue Setup</source>
        <translation>Paravue Setup</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Остановить</translation>
    </message>
</context>
<context>
    <name>paravue::ScheduleGrid</name>
    <message>
        <source>Week schedule</source>
        <translation>Расписание на неделю</translation>
    </message>
    <message>
        <source>%1; %2</source>
        <translation>%1; %2</translation>
    </message>
    <message>
        <source>Paint the selection</source>
        <translation>Закрасить выделение</translation>
    </message>
    <message>
        <source>Erase the selection</source>
        <translation>Стереть выделение</translation>
    </message>
    <message>
        <source>Select the week</source>
        <translation>Выделить неделю</translation>
    </message>
    <message>
        <source>Copy the selected days</source>
        <translation>Копировать выделенные дни</translation>
    </message>
    <message>
        <source>Paste into the selected days</source>
        <translation>Вставить в выделенные дни</translation>
    </message>
    <message>
        <source>Clear the week</source>
        <translation>Очистить неделю</translation>
    </message>
    <message>
        <source>Not changed, as what is stored is not understood: %1. &quot;Clear&quot; for a day replaces it.</source>
        <translation>Не изменено, так как сохранённое не распознано: %1. «Очистить» для дня заменит его.</translation>
    </message>
    <message>
        <source>Clear %1</source>
        <translation>Очистить: %1</translation>
    </message>
    <message>
        <source>Clear %1 and what is not understood</source>
        <translation>Очистить: %1 вместе с нераспознанным</translation>
    </message>
    <message>
        <source>Not copied: what is stored for %1 is not understood</source>
        <translation>Не скопировано: сохранённое для «%1» не распознано</translation>
    </message>
    <message>
        <source>Not pasted: the clipboard holds no days of a schedule</source>
        <translation>Не вставлено: в буфере обмена нет дней расписания</translation>
    </message>
    <message>
        <source>Not pasted: %1 days do not fit from %2 on</source>
        <translation>Не вставлено: столько дней (%1) не помещается начиная с «%2»</translation>
    </message>
    <message>
        <source>Not pasted: the copied day has %1 entries and a day here %2</source>
        <translation>Не вставлено: число записей в скопированном дне: %1, а в здешнем: %2</translation>
    </message>
    <message>
        <source>Not pasted: the copied entry &quot;%1&quot; does not exist here</source>
        <translation>Не вставлено: скопированной записи «%1» здесь не бывает</translation>
    </message>
</context>
<context>
    <name>paravue::ScheduleTexts</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1, %2 to %3: %4</source>
        <translation>%1, %2–%3: %4</translation>
    </message>
    <message>
        <source>%1 to %2 %3</source>
        <translation>%1 – %2 %3</translation>
    </message>
    <message>
        <source>not understood (length %1)</source>
        <translation>не распознано (длина %1)</translation>
    </message>
    <message>
        <source>unknown (%1)</source>
        <translation>неизвестно (%1)</translation>
    </message>
</context>
<context>
    <name>paravue::ScreenshotTour</name>
    <message>
        <source>The recorder does not answer.</source>
        <translation>Регистратор не отвечает.</translation>
    </message>
    <message>
        <source>The window has no tabs.</source>
        <translation>В окне нет вкладок.</translation>
    </message>
    <message>
        <source>The folder %1 cannot be made.</source>
        <translation>Не удалось создать папку %1.</translation>
    </message>
    <message>
        <source>The picture %1 cannot be written.</source>
        <translation>Не удалось записать изображение %1.</translation>
    </message>
</context>
<context>
    <name>paravue::SendingDialog</name>
    <message>
        <source>File</source>
        <translation>Файл</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Состояние</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Файлы</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Настройка</translation>
    </message>
    <message>
        <source>Sent</source>
        <translation>Отправлено</translation>
    </message>
    <message>
        <source>Recorder</source>
        <translation>В регистраторе</translation>
    </message>
    <message>
        <source>Kept otherwise by the recorder</source>
        <translation>Сохранено регистратором иначе</translation>
    </message>
    <message>
        <source>Sending</source>
        <translation>Отправка</translation>
    </message>
    <message>
        <source>Being sent</source>
        <translation>Отправляется</translation>
    </message>
    <message>
        <source>Waiting</source>
        <translation>Ожидает</translation>
    </message>
    <message>
        <source>Saving the settings</source>
        <translation>Сохранение настроек</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Остановить</translation>
    </message>
    <message>
        <source>Sent, being compared</source>
        <translation>Отправлено, сравнивается</translation>
    </message>
    <message>
        <source>Fetching what the recorder has now, to compare it</source>
        <translation>Получение текущих настроек регистратора для сравнения</translation>
    </message>
    <message>
        <source>Do not compare</source>
        <translation>Не сравнивать</translation>
    </message>
    <message>
        <source>Sent and confirmed</source>
        <translation>Отправлено и подтверждено</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>Sent, kept otherwise</source>
        <translation>Отправлено, сохранено иначе</translation>
    </message>
    <message>
        <source>Sent, but the recorder keeps one value otherwise</source>
        <translation>Отправлено, но одно значение регистратор сохранил иначе</translation>
    </message>
    <message>
        <source>Keep the recorder&apos;s</source>
        <translation>Оставить как в регистраторе</translation>
    </message>
    <message>
        <source>Send again</source>
        <translation>Отправить снова</translation>
    </message>
    <message>
        <source>Go on editing</source>
        <translation>Продолжить правку</translation>
    </message>
    <message>
        <source>Sent, not confirmed</source>
        <translation>Отправлено, не подтверждено</translation>
    </message>
    <message>
        <source>Everything was sent, but could not be confirmed: %1</source>
        <translation>Всё отправлено, но подтвердить это не удалось: %1</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Повторить</translation>
    </message>
    <message>
        <source>Not sent</source>
        <translation>Не отправлено</translation>
    </message>
    <message>
        <source>Not sent, and replaced by what the recorder has</source>
        <translation>Не отправлено и заменено тем, что есть в регистраторе</translation>
    </message>
    <message>
        <source>Send the rest</source>
        <translation>Отправить остальное</translation>
    </message>
    <message numerus="yes">
        <source>Sent, but the recorder keeps %n values otherwise</source>
        <translation>
            <numerusform>Отправлено, но %n значение регистратор сохранил иначе</numerusform>
            <numerusform>Отправлено, но %n значения регистратор сохранил иначе</numerusform>
            <numerusform>Отправлено, но %n значений регистратор сохранил иначе</numerusform>
        </translation>
    </message>
    <message>
        <source>The values of the recorder could not be taken into the window: %1</source>
        <translation>Не удалось внести значения регистратора в окно: %1</translation>
    </message>
    <message>
        <source>Leave them</source>
        <translation>Оставить</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Адрес</translation>
    </message>
    <message>
        <source>Sent, but not answered</source>
        <translation>Отправлено, но ответа не было</translation>
    </message>
</context>
<context>
    <name>paravue::SnapshotHistory</name>
    <message>
        <source>History</source>
        <translation>История</translation>
    </message>
    <message>
        <source>Compare with what the recorder had earlier, and restore it (Ctrl+H)</source>
        <translation>Сравнить с прежними настройками регистратора и восстановить их (Ctrl+H)</translation>
    </message>
    <message>
        <source>The copy of &quot;%1&quot; cannot be read: %2</source>
        <translation>Не удалось прочитать копию «%1»: %2</translation>
    </message>
    <message>
        <source>The present settings of the recorder could not be kept as a snapshot. Send all the same?</source>
        <translation>Не удалось сохранить снимок текущих настроек регистратора. Всё равно отправить?</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Отправить</translation>
    </message>
    <message>
        <source>Do not send</source>
        <translation>Не отправлять</translation>
    </message>
    <message>
        <source>The snapshot %1 holds no edits.</source>
        <translation>В снимке настроек %1 нет правки.</translation>
    </message>
    <message>
        <source>Not all changes can be kept in the snapshot. Save the others?</source>
        <translation>Не все изменения можно сохранить в снимке настроек. Сохранить остальные?</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Сохранить</translation>
    </message>
    <message>
        <source>Go on editing</source>
        <translation>Продолжить правку</translation>
    </message>
</context>
<context>
    <name>paravue::SnapshotStore</name>
    <message>
        <source>There is no room for the files of the snapshot: %1</source>
        <translation>Нет места для файлов снимка настроек: %1</translation>
    </message>
    <message>
        <source>There is no room for the edited values of &quot;%1&quot;.</source>
        <translation>Нет места для изменённых значений «%1».</translation>
    </message>
    <message>
        <source>The edited values of &quot;%1&quot; cannot be read: %2</source>
        <translation>Не удалось прочитать изменённые значения «%1»: %2</translation>
    </message>
    <message>
        <source>There is no room to leave the passwords out: %1</source>
        <translation>Нет места, чтобы исключить пароли: %1</translation>
    </message>
    <message>
        <source>%1 was changed by another program meanwhile, so the edits were written into %2.</source>
        <translation>Файл %1 тем временем изменила другая программа, поэтому правки записаны в %2.</translation>
    </message>
    <message>
        <source>Passwords are not kept in snapshots, so these edits are left out: %1</source>
        <translation>Пароли не хранятся в снимках, поэтому эта правка не сохраняется: %1</translation>
    </message>
    <message>
        <source>Passwords are not kept in snapshots, and without them entries that were added, moved or renamed would get wrong ones. So all edits of their lists are left out: %1</source>
        <translation>Пароли в снимках не хранятся, а без них добавленные, перемещённые или переименованные записи получили бы чужие. Поэтому все правки их списков пропускаются: %1</translation>
    </message>
</context>
<context>
    <name>paravue::StatusLine</name>
    <message>
        <source>Try again</source>
        <translation>Повторить</translation>
    </message>
    <message>
        <source>Give up</source>
        <translation>Прекратить</translation>
    </message>
    <message>
        <source>Close the connection; nothing more is sent</source>
        <translation>Закрыть соединение; больше ничего не будет отправлено</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Обновить</translation>
    </message>
    <message>
        <source>Fetch the values of the recorder anew (F5)</source>
        <translation>Получить значения регистратора заново (F5)</translation>
    </message>
    <message>
        <source>Refreshed at %1</source>
        <translation>Обновлено в %1</translation>
    </message>
    <message>
        <source>%1: done at %2</source>
        <translation>%1: выполнено в %2</translation>
    </message>
    <message>
        <source>%1: refused at %2</source>
        <translation>%1: отклонено в %2</translation>
    </message>
    <message>
        <source>%1: takes effect when the recorder is restarted</source>
        <translation>%1: вступит в силу после перезагрузки регистратора</translation>
    </message>
    <message>
        <source>Waiting: %1</source>
        <translation>В очереди: %1</translation>
    </message>
    <message>
        <source>Not done: %1</source>
        <translation>Не выполнено: %1</translation>
    </message>
</context>
<context>
    <name>paravue::StreamDetails</name>
    <message>
        <source>%1 × %2 pixels</source>
        <translation>%1 × %2 пикселей</translation>
    </message>
    <message>
        <source>Stream details</source>
        <translation>Сведения о потоке</translation>
    </message>
    <message>
        <source>Copy all</source>
        <translation>Копировать всё</translation>
    </message>
    <message>
        <source>Picture: %1</source>
        <translation>Изображение: %1</translation>
    </message>
    <message>
        <source>State: %1</source>
        <translation>Состояние: %1</translation>
    </message>
    <message>
        <source>current</source>
        <translation>поступает</translation>
    </message>
    <message>
        <source>Shown: %1</source>
        <translation>Показано: %1</translation>
    </message>
    <message>
        <source>Kind: still pictures</source>
        <translation>Вид: отдельные кадры</translation>
    </message>
    <message>
        <source>Pictures shown: %1</source>
        <translation>Показано кадров: %1</translation>
    </message>
    <message>
        <source>Reconnections: %1</source>
        <translation>Повторных соединений: %1</translation>
    </message>
    <message>
        <source>Codec: %1</source>
        <translation>Кодек: %1</translation>
    </message>
    <message>
        <source>not known yet</source>
        <translation>пока неизвестно</translation>
    </message>
    <message>
        <source>Size: %1</source>
        <translation>Размер: %1</translation>
    </message>
    <message>
        <source>Pictures received: %1</source>
        <translation>Получено кадров: %1</translation>
    </message>
    <message>
        <source>Pictures left out: %1</source>
        <translation>Пропущено кадров: %1</translation>
    </message>
    <message>
        <source>Bit rate: %1 kbit/s</source>
        <translation>Скорость потока: %1 кбит/с</translation>
    </message>
    <message>
        <source>Lateness: %1 ms, at most %2 ms</source>
        <translation>Задержка: %1 мс, не более %2 мс</translation>
    </message>
    <message>
        <source>Bytes received: %1</source>
        <translation>Получено байтов: %1</translation>
    </message>
    <message>
        <source>Lost bytes: %1 at %2 places</source>
        <translation>Потеряно байтов: %1 (мест: %2)</translation>
    </message>
    <message>
        <source>Lost fragments: %1, lost frames: %2</source>
        <translation>Потеряно фрагментов: %1, потеряно кадров: %2</translation>
    </message>
    <message>
        <source>Attempts without a picture: %1</source>
        <translation>Попыток без изображения: %1</translation>
    </message>
</context>
<context>
    <name>paravue::TabBadges</name>
    <message>
        <source>1 change</source>
        <translation>1 изменение</translation>
    </message>
    <message>
        <source>1 problem</source>
        <translation>1 ошибка</translation>
    </message>
    <message numerus="yes">
        <source>%n changes</source>
        <translation>
            <numerusform>%n изменение</numerusform>
            <numerusform>%n изменения</numerusform>
            <numerusform>%n изменений</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n problems</source>
        <translation>
            <numerusform>%n ошибка</numerusform>
            <numerusform>%n ошибки</numerusform>
            <numerusform>%n ошибок</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>paravue::UserListView</name>
    <message>
        <source>No users</source>
        <translation>Нет пользователей</translation>
    </message>
</context>
<context>
    <name>paravue::WeekSchedule</name>
    <message>
        <source>Off</source>
        <translation>Выключено</translation>
    </message>
    <message>
        <source>Continuous</source>
        <translation>Постоянно</translation>
    </message>
    <message>
        <source>On motion</source>
        <translation>По движению</translation>
    </message>
    <message>
        <source>On alarm</source>
        <translation>По тревоге</translation>
    </message>
    <message>
        <source>Paint with this kind (key %1)</source>
        <translation>Рисовать этим видом (клавиша %1)</translation>
    </message>
    <message>
        <source>Copy %1 to</source>
        <translation>Копировать %1 в</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Очистить</translation>
    </message>
    <message>
        <source>Whole week</source>
        <translation>Вся неделя</translation>
    </message>
    <message>
        <source>Working days</source>
        <translation>Рабочие дни</translation>
    </message>
    <message>
        <source>Weekend</source>
        <translation>Выходные</translation>
    </message>
</context>
<context>
    <name>paravue::WindowHeader</name>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
</context>
</TS>
