#!/bin/bash
# Prints the Metadata document of volume $1 made from the simulator's info files the way a save
# makes it (the reply wrapper and result line dropped), for round trips without the save side.
echo "<metadata>"
for kind in TrusteeInfo UserInfo DirInfo; do
  sed '1,2d;$d' "/_admin/Manage_QUILL/Volume/$1/$kind.xml"
done
echo "</metadata>"
