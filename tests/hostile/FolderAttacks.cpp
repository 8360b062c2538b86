/// Folder names that no server should send.

#include <gtest/gtest.h>

#include "hostile/ServerAttack.h"
#include "hostile/Sessions.h"

namespace tarnwell::test {

namespace {

/// The server's only folder is this one.
ServerAttack folder(std::string name, std::string attack, std::string outcome, const std::string& line,
                    const std::string& key, JSONValue expected) {
  ServerAttack row = attackDuring(listSession().answering("LIST", line + "\r\nTAG OK done\r\n"),
                                  std::move(name), std::move(attack), std::move(outcome));
  row.check = [key, expected = std::move(expected)](const JSONValue& result) {
    ASSERT_EQ(result["count"], JSONValue(1));
    EXPECT_EQ((*result["folders"].arrayValue())[0][key], expected);
  };
  return row;
}

/// A move with these folders. Without a target, a move to the trash.
Session moveAmong(const std::string& lines, const std::string& target) {
  const bool isTrash = target.empty();
  Session session = (isTrash ? trashSession() : moveSession()).answering("LIST", lines + "TAG OK done\r\n");
  if (!isTrash) {
    session.arguments["targetFolder"] = target;
  }
  return session;
}

/// The message goes to the folder in the command.
ServerAttack moving(std::string name, std::string attack, std::string outcome, const std::string& lines,
                    const std::string& target, const std::string& quotedPath) {
  Session session = moveAmong(lines, target);
  session.exchanges[session.position("MOVE")].command = "A0005 UID MOVE 7 " + quotedPath + "\r\n";
  ServerAttack row = attackDuring(session, std::move(name), std::move(attack), std::move(outcome));
  row.check = [](const JSONValue& result) { EXPECT_EQ(result["executed"], JSONValue(true)); };
  return row;
}

/// The client sends no MOVE.
ServerAttack notMoving(std::string name, std::string attack, std::string outcome, const std::string& lines,
                       const std::string& target, std::string error) {
  ServerAttack row = attackDuring(moveAmong(lines, target).leavingAfter("LIST"), std::move(name),
                                  std::move(attack), std::move(outcome));
  row.error = std::move(error);
  return row;
}

ServerAttack manyFolders() {
  const Session session = listSession();
  const Dialogue steps{answer("* LIST () \"/\" Sales\r\n", 100000), answer("A0004 OK done\r\n")};
  ServerAttack row = attackDuring(session, answeredBy(session, "LIST", steps), "manyFolders",
                                  "100,000 folders", "lists them all");
  row.check = [](const JSONValue& result) { EXPECT_EQ(result["count"], JSONValue(100000)); };
  return row;
}

}  // namespace

std::vector<Attack> folderAttacks() {
  const std::string inbox = "* LIST () \"/\" INBOX\r\n";
  return byServer({
      manyFolders(),
      folder("delimiterNIL", "a folder without a delimiter", "shows a slash", "* LIST () NIL Archive",
             "delimiter", "/"),
      folder("delimiterLong", "a delimiter of many characters", "takes it as it is",
             "* LIST () \"--\" a--b--c", "name", "c"),
      folder("eightBitName", "a name with bytes that are no UTF-8", "shows replacement characters",
             "* LIST () \"/\" \"caf\xE9\"", "path", "caf\xEF\xBF\xBD"),
      folder("modifiedUTF7", "a name in modified UTF-7", "decodes the name", "* LIST () \"/\" \"&ZeVnLIqe-\"",
             "name", "日本語"),
      folder("pathInModifiedUTF7", "a path in modified UTF-7", "shows it as the server spells it",
             "* LIST () \"/\" \"&ZeVnLIqe-\"", "path", "&ZeVnLIqe-"),
      folder("brokenUTF7", "a name in broken modified UTF-7", "shows it as the server spells it",
             "* LIST () \"/\" \"&Zeé&&-\"", "name", "&Zeé&&-"),
      folder("controlsInModifiedUTF7", "control characters in modified UTF-7",
             "shows the name as the server spells it", "* LIST () \"/\" \"&ABs-[2J&AAo-\"", "name",
             "&ABs-[2J&AAo-"),
      folder("overrideInModifiedUTF7", "a name in modified UTF-7 that would turn around the text after it",
             "shows it as the server spells it", "* LIST () \"/\" \"&IC4-hsarT\"", "name", "&IC4-hsarT"),
      folder("flagsNIL", "NIL in the place of the attributes", "lists the folder", "* LIST NIL \"/\" Archive",
             "selectable", true),
      folder(
          "nameNIL", "a folder whose name is NIL, and one without a name", "leaves them out",
          "* LIST () \"/\" NIL\r\n* LIST () \"/\"\r\n* LIST\r\n* LIST () \"/\" \"\"\r\n* LIST () \"/\" Left",
          "path", "Left"),
      moving("quotesAndBackslashes", "a name with quotes and backslashes", "escapes them in the command",
             "* LIST () \"/\" \"a\\\"b\\\\c\"\r\n", "a\"b\\c", "\"a\\\"b\\\\c\""),
      moving("markerInName", "a name that looks like a literal's announcement", "quotes it",
             "* LIST () \"/\" \"{5}\"\r\n", "{5}", "\"{5}\""),
      moving("namedInItsOwnScript", "a name in modified UTF-7 that the target gives decoded",
             "sends the path as the server spells it", inbox + "* LIST () \"/\" &MNcw7TC4MKcwrzDI-\r\n",
             "プロジェクト", "\"&MNcw7TC4MKcwrzDI-\""),
      moving("twoTrashFolders", "two folders marked as trash", "takes the first",
             inbox + "* LIST (\\Trash) \"/\" First\r\n* LIST (\\Trash) \"/\" Second\r\n", "", "\"First\""),
      moving("falseTrash", "a folder called Trash before the one marked as trash", "takes the marked one",
             "* LIST () \"/\" Trash\r\n* LIST (\\Trash) \"/\" Marked\r\n", "", "\"Marked\""),
      notMoving("commandInName", "a name with a line end and a command after it",
                "refuses the name; nothing of it is sent",
                "* LIST () \"/\" {23}\r\nArchive\r\nA0005 LOGOUT\r\n\r\n", "Archive\r\nA0005 LOGOUT\r\n",
                "Invalid argument: control character in IMAP argument"),
      notMoving("zeroByteInName", "a trash folder with a zero byte in its name", "refuses the name",
                std::string("* LIST (\\Trash) \"/\" \"a\0b\"\r\n", 27), "",
                "Invalid argument: control character in IMAP argument"),
      notMoving("lineEndInModifiedUTF7", "a name in modified UTF-7 with a line end and a command after it",
                "does not find it decoded", "* LIST () \"/\" Archive&AA0ACg-LOGOUT\r\n", "Archive\r\nLOGOUT",
                "Folder not found: Archive\r\nLOGOUT"),
      notMoving("mapsToTheInbox", "the last part of INBOX has the name of the target",
                "refuses to move a message to where it is", "* LIST () \"N\" INBOX\r\n", "BOX",
                "Refusing to move a message to INBOX."),
      notMoving("noTrash", "no folder is a trash folder", "says that there is none", inbox, "",
                "Folder not found: Trash"),
  });
}

}  // namespace tarnwell::test
