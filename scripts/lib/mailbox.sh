# shellcheck shell=bash
# The sample mailbox as a Maildir tree. INBOX has tests/fixtures/mailbox/*.eml, with UIDs in the order of the
# file names and received at the time of their Date header. The mails named in seen.txt are already read.

# The other folders, as they are spelled on the disk: Maildir++ joins levels with a full stop, and names are
# in modified UTF-7 (RFC 3501 section 5.1.3). The last one reads プロジェクト.
mailbox_folders=(Trash Archive Archive.2023 "Sent Messages" Junk Drafts 'Quotes "and" spaces'
  '&MNcw7TC4MKcwrzDI-')

# make_mailbox MAILDIR FIXTURES
make_mailbox() {
  local maildir=$1 fixtures=$2 folder file name flags date number=0
  for folder in "" "${mailbox_folders[@]}"; do
    mkdir -p "$maildir/${folder:+.$folder}"/{cur,new,tmp}
  done
  for file in "$fixtures"/*.eml; do
    number=$((number + 1))
    name=$(basename "$file" .eml)
    flags=
    if grep -qx -- "$name" "$fixtures/seen.txt"; then flags=S; fi
    date=$(sed -n 's/^Date: //p;/^$/q' "$file" | head -n 1)
    place_mail "$maildir" "1$(printf %04d "$number").$name" "$flags" "$date" <"$file"
  done
}

# add_notes MAILDIR COUNT: adds plain mails that are older than the samples and have lower UIDs.
add_notes() {
  local maildir=$1 count=$2 number
  mkdir -p "$maildir/cur"
  for ((number = 1; number <= count; number++)); do
    place_mail "$maildir" "0$(printf %04d "$number").note" S "2024-02-01T00:00:00Z" <<NOTE
Date: Thu, 01 Feb 2024 00:00:00 +0000
From: Notes <notes@example.org>
To: user@example.org
Subject: Note $number
Message-ID: <note-$number@example.org>

This is note number $number.
NOTE
  done
}

# place_mail MAILDIR NAME FLAGS DATE: adds one mail from standard input.
place_mail() {
  local path="$1/cur/$2.sample:2,$3"
  cat >"$path"
  touch -d "$4" "$path"
}
