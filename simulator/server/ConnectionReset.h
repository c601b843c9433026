#pragma once

class QTcpSocket;

/// Ends the connection with a reset instead of an orderly close: the peer sees "connection reset".
void resetConnection(QTcpSocket &socket);
