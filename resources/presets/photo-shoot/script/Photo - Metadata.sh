#!/bin/sh
# Runs after the folder has been made and writes Metadata.xmp into it: title, keywords and job number in the form that raw
# converters read as a metadata preset (XMP, ISO 16684-1, with the schemas of Dublin Core and Photoshop).
# The environment holds ORV_CONTEXT, ORV_ROOT_PATH and one P_ variable for each variable of the preset, nothing else;
# not even PATH.
PATH=/usr/local/bin:/usr/bin:/bin
export PATH
set -eu

if [ -z "${ORV_ROOT_PATH-}" ] || [ ! -d "$ORV_ROOT_PATH" ]; then
    echo "ORV_ROOT_PATH names no folder: '${ORV_ROOT_PATH-}'" >&2
    exit 1
fi
target=$ORV_ROOT_PATH/Metadata.xmp
if [ -e "$target" ] || [ -L "$target" ]; then
    echo "Metadata.xmp is there already" >&2
    exit 1
fi

# A value as XML text, on one line.
xml() {
    printf '%s' "$1" | tr '[:cntrl:]' ' ' | sed -e 's/&/\&amp;/g' -e 's/</\&lt;/g' -e 's/>/\&gt;/g'
}

# Written under another name first, so that nobody ever sees half of it.
draft=$target.$$
trap 'rm -f "$draft"' EXIT
cat >"$draft" <<END
<?xml version="1.0" encoding="UTF-8"?>
<x:xmpmeta xmlns:x="adobe:ns:meta/">
  <rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">
    <rdf:Description rdf:about=""
        xmlns:dc="http://purl.org/dc/elements/1.1/"
        xmlns:photoshop="http://ns.adobe.com/photoshop/1.0/">
      <dc:title><rdf:Alt><rdf:li xml:lang="x-default">$(xml "${P_SHOOT-}")</rdf:li></rdf:Alt></dc:title>
      <dc:subject><rdf:Bag><rdf:li>$(xml "${P_CLIENT-}")</rdf:li></rdf:Bag></dc:subject>
      <photoshop:TransmissionReference>$(xml "${P_AUTOSHOOT-}")</photoshop:TransmissionReference>
    </rdf:Description>
  </rdf:RDF>
</x:xmpmeta>
END
mv "$draft" "$target"

# Lines of the form key=value are this script's result.
echo "metadata=Metadata.xmp"
