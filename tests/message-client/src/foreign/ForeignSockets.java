package foreign;

import java.io.IOException;
import java.io.ObjectInputStream;
import java.io.Serializable;
import java.net.Socket;
import java.rmi.server.RMIClientSocketFactory;

/** Part of a server's reference that no client knows. */
public class ForeignSockets implements RMIClientSocketFactory, Serializable {
    private static final long serialVersionUID = 1L;

    @Override
    public Socket createSocket(String host, int port) throws IOException {
        return new Socket(host, port);
    }

    private void readObject(ObjectInputStream in) throws IOException, ClassNotFoundException {
        Readings.note();
        in.defaultReadObject();
    }
}
