package foreign;

import java.io.IOException;
import java.io.ObjectInputStream;

/** An exception that only the server knows. */
public class ForeignException extends RuntimeException {
    private static final long serialVersionUID = 1L;

    private void readObject(ObjectInputStream in) throws IOException, ClassNotFoundException {
        Readings.note();
        in.defaultReadObject();
    }
}
