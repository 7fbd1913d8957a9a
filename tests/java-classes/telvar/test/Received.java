package telvar.test;

import java.util.Map;

/** Remembers the one value it was given, by constructor or by method, and tells it as text with its Java type. */
public class Received {
    private String received;

    public Received() {
        received = "nothing";
    }

    public Received(String text) {
        received = "String " + text;
    }

    public Received(int number) {
        received = "int " + number;
    }

    public Received(String id, int number) {
        received = "String " + id + ", int " + number;
    }

    public Received(int id, String sid, String user, String domain, boolean connected) {
        received = "int " + id + ", String " + sid + ", String " + user + ", String " + domain + ", boolean " + connected;
    }

    public Received(long number, double fraction, boolean flag, Object object) {
        received = "long " + number + ", double " + fraction + ", boolean " + flag + ", Object " + object;
    }

    public void takeText(String text) {
        received = text == null ? "null" : "String of " + text.length() + " " + text;
    }

    public void takeInt(int number) {
        received = "int " + number;
    }

    public void takeLong(long number) {
        received = "long " + number;
    }

    public void takeDouble(double number) {
        received = "double " + Double.toHexString(number);
    }

    public void takeBoolean(boolean flag) {
        received = "boolean " + flag;
    }

    public void takeObject(Object object) {
        received = "Object " + object;
    }

    public String tell() {
        return received;
    }

    public String tellCharacterCodes(String text) {
        StringBuilder codes = new StringBuilder();
        for (char c : text.toCharArray()) {
            codes.append(String.format("%04x ", (int) c));
        }
        return codes.toString().trim();
    }

    public String join(String first, int second, Received third) {
        return first + "|" + second + "|" + third.received;
    }

    public Map<String, String> tellNoString() {
        return null;
    }

    @Override
    public String toString() {
        return "Received(" + received + ")";
    }
}
