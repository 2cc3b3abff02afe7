// The chart of accounts in a window of Windows Forms, from C#: the control by its class, commands
// bound early through IFormUI, all else by name.
//
//   csc /platform:x64 /target:winexe Accounts.cs Host.cs      (x86 for the 32-bit library)
//
// The build needs nothing of the library; to run, it must be registered.
using System;
using System.Runtime.InteropServices;
using System.Windows.Forms;

namespace Accounts
{
    /// The commands of a view. A project that references qnFormUI.tlb gets this from there.
    [ComImport, Guid("a76e3f3f-18fe-4b73-9179-30194a1dd39f")]
    [InterfaceType(ComInterfaceType.InterfaceIsDual)]
    public interface IFormUI
    {
        [DispId(1001)] bool Init([MarshalAs(UnmanagedType.IDispatch)] ref object pcSystem, int plCzID, int plID);
        [DispId(1002)] bool Refresh();
        [DispId(1003)] bool FileNew();
        [DispId(1004)] bool FileNewNext();
        [DispId(1005)] bool FileEdit();
        [DispId(1006)] bool FileDelete();
        [DispId(1007)] bool FileSave();
        [DispId(1008)] bool FileCancel();
        // The members that follow stand behind these: declare them all before you use one of them.
    }

    /// Events of Kjkm.
    [ComImport, Guid("e98a2932-117d-4424-b671-ac044d410651")]
    [InterfaceType(ComInterfaceType.InterfaceIsIDispatch)]
    public interface IKjkmEvents
    {
        [DispId(1)] void Message(string psMsg);
        [DispId(2)] void ErrMessage(string psMsg, int plLevel, string psTitle);
    }

    /// The chart of accounts as a control of Windows Forms.
    public class Chart : AxHost, IKjkmEvents
    {
        private ConnectionPointCookie events;

        public Chart() : base("f787c732-3151-4ffb-a967-52197c15d1bd") { }

        public IFormUI Form { get { return (IFormUI)GetOcx(); } }
        public dynamic ByName { get { return GetOcx(); } }

        protected override void CreateSink()
        {
            events = new ConnectionPointCookie(GetOcx(), this, typeof(IKjkmEvents));
        }
        protected override void DetachSink()
        {
            if (events != null) events.Disconnect();
            events = null;
        }
        public void Message(string text) { }
        public void ErrMessage(string text, int level, string title) { MessageBox.Show(text, title); }
    }

    public class MainForm : Form
    {
        private readonly Chart chart = new Chart { Dock = DockStyle.Fill };
        private object system = new Host();

        public MainForm()
        {
            Text = "Accounts";
            ClientSize = new System.Drawing.Size(800, 600);
            var commands = new MenuStrip();
            commands.Items.Add("New", null, (sender, e) => chart.Form.FileNew());
            commands.Items.Add("Edit", null, (sender, e) => chart.Form.FileEdit());
            commands.Items.Add("Delete", null, (sender, e) => chart.Form.FileDelete());
            commands.Items.Add("Pick", null, (sender, e) => Pick());
            Controls.Add(chart);
            Controls.Add(commands);
        }
        protected override void OnLoad(EventArgs e)
        {
            base.OnLoad(e);
            if (chart.Form.Init(ref system, 0, 0)) chart.Form.Refresh();
            dynamic grid = chart.ByName.Controls.Item("Vs(0)");
            Text = (grid.Rows - grid.FixedRows) + " accounts";
        }
        protected override void OnFormClosed(FormClosedEventArgs e)
        {
            chart.ByName.Clear();                  // before the host's objects end
            base.OnFormClosed(e);
        }

        // The picker without a window: what a user has typed elsewhere becomes an account.
        private void Pick()
        {
            dynamic picker = Activator.CreateInstance(Type.GetTypeFromProgID("tavrix.selKjkm"));
            picker.Init(ref system, 1, "");
            picker.Validate("", "ccode", "ccode_name", "1002", "", "");
            MessageBox.Show(picker.Value + " " + picker.Text);
            picker.Clear();
        }

        [STAThread]
        public static void Main()
        {
            Application.EnableVisualStyles();
            Application.Run(new MainForm());
        }
    }
}
