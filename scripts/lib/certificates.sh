# shellcheck shell=bash
# A throw-away certificate authority and a server certificate for localhost.

# make_certificates DIRECTORY [NAME]: writes ca.pem, server.pem and server.key there. NAME is one more name of
# the server.
make_certificates() {
  local directory=$1 names="DNS:localhost,IP:127.0.0.1${2:+,DNS:$2}"
  local key=(-newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes)
  {
    openssl req -x509 "${key[@]}" -days 30 -subj "/CN=Throw-away CA" \
      -addext basicConstraints=critical,CA:TRUE -addext keyUsage=critical,keyCertSign,cRLSign \
      -keyout "$directory/ca.key" -out "$directory/ca.pem"
    openssl req "${key[@]}" -subj /CN=localhost -keyout "$directory/server.key" \
      -out "$directory/server.csr"
    printf 'subjectAltName=%s\nextendedKeyUsage=serverAuth\n' "$names" >"$directory/server.ext"
    openssl x509 -req -in "$directory/server.csr" -CA "$directory/ca.pem" -CAkey "$directory/ca.key" \
      -CAcreateserial -days 30 -extfile "$directory/server.ext" -out "$directory/server.pem"
  } >"$directory/openssl.log" 2>&1 || {
    cat "$directory/openssl.log" >&2
    fail "openssl could not make the certificates"
  }
  chmod 644 "$directory/ca.pem" "$directory/server.pem"
}
