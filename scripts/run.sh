#!/usr/bin/env bash
# Installs what is needed, builds the CIM server with the provider modules, and runs it in the
# foreground over the demo array until Ctrl-C, on loopback only, over HTTP and HTTPS. Before it
# starts it prints where it listens, the array's users and wbemcli commands to paste into another
# terminal. At first start it makes a self-signed demo certificate in its state directory,
# outside the source tree; src/cimserver/ksv-cimserver.conf says how to serve other hosts.
#   scripts/run.sh
set -euo pipefail
cd "$(dirname "$0")/.."

model=examples/arrays/demo.json
address=127.0.0.1
port=5988
https_port=5989
socket=/tmp/ksv-cimserver.socket
state="${XDG_STATE_HOME:-$HOME/.local/state}/ksv-cimserver"
certificate="$state/demo-cert.pem"
key="$state/demo-key.pem"

scripts/setup.sh
scripts/build.sh plain ksv-cimserver

# Valid for the loopback address and name the commands below use; the key is the user's alone.
make_demo_certificate() {
    mkdir -p "$state"
    (umask 077 && openssl req -x509 -newkey rsa:3072 -nodes -days 825 -keyout "$key" \
        -out "$certificate" -subj "/CN=ksv-cimserver demo" \
        -addext "subjectAltName=IP:${address},DNS:localhost" 2>/dev/null)
}
[ -s "$certificate" ] && [ -s "$key" ] || make_demo_certificate

# The model is JSON; perl comes with build-essential and reads it with its core JSON module.
# Prints the system name, the first present disk's DeviceID, the first user the array admits
# with that user's password, then one line per user.
model_facts() {
    perl -MJSON::PP -e '
        local $/;
        my $m = decode_json(<STDIN>);
        my ($disk) = grep { !$_->{absent} } @{ $m->{disks} };
        my @users = @{ $m->{users} || [] };
        my $admitted = sub { !exists $_[0]{cimAccess} || $_[0]{cimAccess} };
        my ($user) = grep { $admitted->($_) } @users;
        printf "%s %s-id-%d %s %s\n", $m->{system}{name}, uc $disk->{wwn}, $disk->{id},
            $user->{name}, $user->{password};
        for my $u (@users) {
            my $line = sprintf "    %-14s %-14s %s", $u->{name}, $u->{password},
                $admitted->($u) ? "" : "refused by the array: every request is denied";
            $line =~ s/\s+$//;
            print "$line\n";
        }' <"$model"
}

facts="$(model_facts)"
read -r system disk_id user password <<<"$(head -n 1 <<<"$facts")"

url="http://${user}:${password}@${address}:${port}/root/ksv"
tls="-cacert ${certificate}"
https_url="https://${user}:${password}@${address}:${https_port}"
disk="KSV_DiskDrive.CreationClassName=\"KSV_DiskDrive\",DeviceID=\"${disk_id}\",SystemCreationClassName=\"KSV_StorageSystem\",SystemName=\"${system}\""
extent="KSV_DiskStorageExtent.CreationClassName=\"KSV_DiskStorageExtent\",DeviceID=\"${disk_id}\",SystemCreationClassName=\"KSV_StorageSystem\",SystemName=\"${system}\""

cat <<EOF

KSV CIM server over ${model} (system ${system})
  CIM-XML over HTTP:  http://${address}:${port}/cimom
  CIM-XML over HTTPS: https://${address}:${https_port}/cimom   (demo certificate ${certificate})
  Local Unix socket:  ${socket}   (CIMClient::connectLocal; the socket's user is the caller)

Users of the array (HTTP Basic authentication):
    name           password
$(tail -n +2 <<<"$facts")
The array also trusts the account this server runs as ("trustedAccounts"): the providers' own
requests through CIMClient::connectLocal() run as that account, as in OpenPegasus.

Disks:
  wbemcli ein '${url}:KSV_DiskDrive'
  wbemcli ei '${url}:KSV_DiskDrive'
  wbemcli gi '${url}:${disk}'
  wbemcli ${tls} ei '${https_url}/root/ksv:KSV_DiskDrive'
  wbemcli ${tls} gi '${https_url}/root/ksv:${disk}'

Disk storage extents:
  wbemcli ein '${url}:KSV_DiskStorageExtent'
  wbemcli ei '${url}:KSV_DiskStorageExtent'
  wbemcli gi '${url}:${extent}'

Associations of that disk:
  wbemcli ain -ac KSV_SystemDisk '${url}:${disk}'
  wbemcli ai -ac KSV_SystemDisk '${url}:${disk}'
  wbemcli ri -arc KSV_DiskPresent '${url}:${disk}'

Over HTTPS, from the interop namespace: the registered profiles, the storage system that
conforms to the Array profile, and its disks:
  wbemcli ${tls} ei '${https_url}/root/interop:CIM_RegisteredProfile'
  wbemcli ${tls} ain -ac CIM_ElementConformsToProfile '${https_url}/root/interop:CIM_RegisteredProfile.InstanceID="KSV:SNIA:Array:1.6.1"'
  wbemcli ${tls} ain -ac KSV_SystemDisk '${https_url}/root/ksv:KSV_StorageSystem.CreationClassName="KSV_StorageSystem",Name="${system}"'

Locate LED of the disk's magazine (2 on, 3 off):
  wbemcli sp '${url}:${disk}' LocationIndicator=2
  wbemcli gp '${url}:${disk}' LocationIndicator

Stop the server with Ctrl-C.

EOF

exec build/src/cimserver/ksv-cimserver --address "$address" --port "$port" --socket "$socket" \
    --enable-https true --https-port "$https_port" --ssl-certificate "$certificate" \
    --ssl-key "$key" --array-model "$model"
