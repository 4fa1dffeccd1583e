"""An HTTPS server on the loopback interface that answers by the path, well or badly.

https_server.py CERTIFICATE KEY: writes its port to descriptor 3, then serves until it is ended.
"""
import os
import socketserver
import ssl
import sys
import time

CHUNK = b"x" * 65536


def answer(status, body=b"", headers=()):
    lines = [f"HTTP/1.1 {status} Answer", f"Content-Length: {len(body)}", "Connection: close", *headers, "", ""]
    return "\r\n".join(lines).encode() + body


class Handler(socketserver.BaseRequestHandler):
    def handle(self):
        try:
            connection = self.server.tls.wrap_socket(self.request, server_side=True)
            self.serve(connection)
            connection.close()
        except (OSError, ssl.SSLError):
            pass  # the client left, or trusts us not

    def serve(self, connection):
        request = b""
        while b"\r\n\r\n" not in request:
            received = connection.recv(65536)
            if not received:
                return
            request += received
        path = request.split(b" ")[1].decode()
        if path.startswith("/status/"):
            status = path.removeprefix("/status/")
            connection.sendall(answer(status, b"" if status in ("204", "304") else b"body"))
        elif path == "/redirect":
            connection.sendall(answer(302, b"elsewhere", ["Location: /status/200"]))
        elif path == "/echo":
            connection.sendall(answer(200, request, ["Set-Cookie: taste=sweet"]))
        elif path == "/large":
            connection.sendall(b"HTTP/1.1 200 Answer\r\nConnection: close\r\n\r\n")
            while True:
                connection.sendall(CHUNK)
        elif path == "/exact":
            connection.sendall(answer(200, CHUNK))
        elif path == "/half":
            connection.sendall(b"HTTP/1.1 200 Answer\r\nContent-Length: 100\r\n\r\nhalf of it")
        elif path == "/half-chunk":
            connection.sendall(b"HTTP/1.1 200 Answer\r\nTransfer-Encoding: chunked\r\n\r\n40\r\nhalf of it")
        elif path == "/nonsense":
            connection.sendall(b"SSH-2.0-nonsense\r\n")
        elif path == "/silent":
            connection.recv(1)
        elif path == "/trickle":
            connection.sendall(b"HTTP/1.1 200 Answer\r\nContent-Length: 100000\r\n\r\n")
            while True:
                connection.sendall(b".")
                time.sleep(0.01)
        elif path == "/updates/stable.json":
            with open(os.path.join(os.path.dirname(sys.argv[1]), "stable.json"), "rb") as manifest:
                connection.sendall(answer(200, manifest.read(), ["Content-Type: text/plain"]))


class Server(socketserver.ThreadingTCPServer):
    daemon_threads = True
    allow_reuse_address = True


def main():
    server = Server(("127.0.0.1", int(sys.argv[3]) if len(sys.argv) > 3 else 0), Handler)
    server.tls = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    server.tls.load_cert_chain(sys.argv[1], sys.argv[2])
    os.write(3, f"{server.server_address[1]}\n".encode())
    server.serve_forever()


main()
